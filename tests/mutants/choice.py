"""Which mutants are tried when there is no time for all."""
import collections
import hashlib
import os


def choose(mutants, count, seed):
    """So many of each kind, and of each kind so many of each folder, as far as there are; the same for the
    same seed and source."""
    def rank(mutant):
        text = "\n".join((str(seed), mutant.file, mutant.kind, mutant.original, mutant.mutant, str(mutant.nth)))
        return hashlib.sha256(text.encode()).hexdigest()

    folders = collections.defaultdict(list)
    for mutant in sorted(mutants, key=rank):
        folders[(mutant.kind, os.path.dirname(mutant.file))].append(mutant)
    queues = collections.defaultdict(list)
    for (kind, _), those in folders.items():
        queues[kind] += enumerate(those)
    for queue in queues.values():
        queue.sort(key=lambda each: (each[0], rank(each[1])), reverse=True)
    chosen = []
    while len(chosen) < count and any(queues.values()):
        for kind in sorted(queues):
            if queues[kind] and len(chosen) < count:
                chosen.append(queues[kind].pop()[1])
    return chosen
