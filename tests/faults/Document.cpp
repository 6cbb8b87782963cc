#include "Document.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>
#include <vector>

#include "Cell.h"
#include "HostCells.h"
#include "KernelUsbCells.h"
#include "LocalCells.h"
#include "NetworkCells.h"
#include "UsbCells.h"
#include "WindowCells.h"

namespace {

struct Section {
  const char* table;
  const char* title;
  const char* about;
  const char* subject = "the printer";  // of the second column
};

constexpr Section kSections[] = {
    {"freezes", "Network: the printer freezes",
     "It neither says nor takes anything more, as if it had lost its power, or as if the cable "
     "were "
     "pulled while the program sends. Switch the printer off and on if it does not come back by "
     "itself, and start the program again."},
    {"is silent", "Network: the printer works on, and is not heard",
     "It takes what it is sent, and nothing comes back: as when the cable is pulled while it "
     "burns. "
     "Once it has everything it burns, heard or not."},
    {"refuses", "Network: the printer refuses the connection",
     "It is busy with another job, or its port is shut."},
    {"closes", "Network: the printer closes the connection",
     "The first message after that is sent into the void, and the next one fails. When the program "
     "has no more to send it waits, as for a silent printer."},
    {"breaks", "Network: the connection breaks",
     "A printer that is switched off and on, or a router that forgets the connection, does this "
     "(TCP: RST). The very next message fails."},
    {"ends its side", "Network: the printer says that it will say nothing more",
     "It ends its own direction of the connection (TCP: FIN), and takes what it is sent."},
    {"no connection", "Network: no connection",
     "Another device has its address by now, or none has; the printer is switched off."},
    {"withdrawn", "Network: the announcement goes",
     "A printer that is no longer announced leaves the list. An update that has begun goes on."},
    {"poor network", "Network: packets are lost, late, out of order or twice",
     "TCP makes that good. Run in a virtual machine, whose kernel does it to what passes between "
     "the "
     "program and the printer; the firmware has 100,000 bytes.",
     "the network"},
    {"pieces", "Network: in pieces, merged, late",
     "How the bytes are cut and when they come makes no difference."},
    {"large firmware", "Network: a firmware of many megabytes",
     "All others here have 28 bytes, which the system takes at once. A large one it takes only as "
     "fast as the printer, and a message that is not taken within five seconds has failed."},
    {"surplus", "Network: bytes that nobody asked for",
     "They come first in whatever is read next."},
    {"response", "Network: the printer does not answer as such a printer does",
     "A device that is not the printer that it said it was must not get a byte of firmware: the "
     "program ends itself, at once. Lengths that do not fit are as harmless as they can be."},
    {"device ID", "Network: what stands in the device ID",
     "Model, variant (`LIC`) and version decide what is sent, and whether anything is."},
    {"burn reply", "Network: the printer's last answer",
     "Anything but a clear success is a failure, whatever the printer has done."},
    {"unplugged", "USB: the cable is pulled",
     "The printer leaves the list, and is a new row when it returns. It has power of its own: once "
     "it has everything it burns on, with or without a cable."},
    {"no answer in time", "USB: nothing happens in time",
     "A message may take 0.2 seconds, an answer 20, and the answer to the firmware 3 seconds for "
     "each started 64 KiB."},
    {"stalls", "USB: the printer stalls a pipe", "The stall is cleared before the next transfer."},
    {"bus errors", "USB: bus errors", "Bad cables and hubs."},
    {"refused by the system", "USB: the system refuses a transfer",
     "Another program takes the interface between two steps, or memory is short."},
    {"not opened", "USB: the printer cannot be opened",
     "Nothing is sent. A printer whose interface was opened and could not be examined has to be "
     "plugged in anew."},
    {"short writes", "USB: the printer takes less than it is sent",
     "A transfer that the system calls complete counts as complete."},
    {"packets", "USB: packets of any size", "How answers are cut makes no difference."},
    {"surplus on USB", "USB: bytes that nobody asked for",
     "They come first in whatever is read next."},
    {"late answers on USB", "USB: an answer to an update before",
     "An update was given up because the answer took too long, the answer came after all, and the "
     "printer was not plugged in anew."},
    {"wrong answers on USB", "USB: the printer does not answer as such a printer does",
     "As over the network."},
    {"kernel: unplugged", "USB on a real bus: the cable is pulled",
     "This section and the next four are run in a virtual machine, with the bus, the driver for "
     "printers (`usblp`) and the rights of its own Linux; the sections above, with a bus of calls. "
     "When an update is over, that driver has the printer's interface again, and one can print. In "
     "the middle of the firmware, that has 4,000,000 bytes."},
    {"kernel: stalls", "USB on a real bus: the printer stalls",
     "The stall is cleared before the next transfer."},
    {"kernel: no answer in time", "USB on a real bus: nothing happens in time",
     "The printer is there, and does not answer on the bus (NAK without an end)."},
    {"kernel: not opened", "USB on a real bus: the printer cannot be used",
     "Another program has it, the user may not use it, or the system is not ready. Nothing is "
     "sent."},
    {"kernel: quit", "USB on a real bus: the program is closed",
     "The driver for printers has the interface again before the program is gone.", "you"},
    {"firmware file", "The computer: the firmware file",
     "Nothing is sent to the printer. A file without a version that counts makes every printer up "
     "to "
     "date: a damaged file is never sent.",
     "the file"},
    {"quit", "The computer: the program is closed",
     "While an update runs, Quit and the window's button ask first. A printer that has everything "
     "burns on.",
     "you"},
    {"system bus", "The computer: the system bus fails",
     "What keeps the computer from sleeping is asked for over it when an update begins, and "
     "outlives "
     "it. The printer stays in the list. Over the network, as the next two sections.",
     "the computer"},
    {"Avahi", "The computer: the Avahi daemon fails",
     "It has found the printer, and is not needed any more to update it, not even once again.",
     "the computer"},
    {"system log", "The computer: the system log fails",
     "Entries are lost for which there is no log daemon, and those that it does not take at once; "
     "what comes when there is one again is written. The program's own report keeps all of them.",
     "the computer"},
    {"interrupted", "The computer: fwupdatectl is interrupted",
     "By SIGTERM or Ctrl-C, twice: after the first, updates that have begun go on. A printer that "
     "has "
     "everything burns on."},
    {"killed", "The computer: fwupdatectl is killed", "By SIGKILL, or for want of memory."},
    {"window: closed", "The window: it is closed",
     "This section and the next three are run with the installed program in a window of a desktop, "
     "over "
     "the network. What kept the computer from sleeping is given back, the exit status is 0, and a "
     "program that is started then does a good update. A firmware that is being sent has 16 MiB "
     "here, "
     "of which the printer takes half: a send is not interrupted, fails after five seconds, and "
     "the "
     "program ends right after it.",
     "you"},
    {"window: killed", "The window: it is killed",
     "By SIGKILL, or for want of memory: the exit status is 137. The system sees to it that the "
     "computer may sleep again.",
     "you"},
    {"window: second download", "The window: a second download",
     "By button, menu, Ctrl+D and assistive technology.", "you"},
    {"window: services", "The window: services of the computer fail",
     "The row stays in the list, and the update goes on. Where the Avahi daemon does not return, "
     "the "
     "program itself looks for printers: one that is switched on afterwards comes into the list, "
     "and "
     "is updated.",
     "the computer"},
    {"second download", "The computer: a second download",
     "Nothing behind the progress takes an order. The update goes on.", "you"},
};

const char* seen(Verdict verdict) {
  switch (verdict) {
    case Verdict::Updated:
      return "updated";
    case Verdict::UpToDate:
      return "up to date";
    case Verdict::Failed:
      return "failed";
    case Verdict::Waits:
      return "waits";
    case Verdict::Aborts:
      return "the program ends";
    case Verdict::NotStarted:
      return "cannot begin";
    case Verdict::Quits:
      return "the program is closed";
    case Verdict::Interrupted:
      return "interrupted";
    case Verdict::Killed:
      return "killed";
  }
  return "";
}

const char* like(Afterwards afterwards) {
  switch (afterwards) {
    case Afterwards::Untouched:
      return "old firmware, untouched";
    case Afterwards::Asked:
      return "old firmware, was only asked";
    case Afterwards::Unfinished:
      return "old firmware, drops what it got";
    case Afterwards::Refusing:
      return "old firmware, could not burn";
    case Afterwards::Unannounced:
      return "**new firmware**, not known";
    case Afterwards::Updated:
      return "new firmware";
  }
  return "";
}

// The last that the log says of it, before it says that it cleans up; an assertion where it ends.
std::string lastWords(const Cell& cell) {
  std::string last;
  for (const std::string& line : cell.log) {
    if (line.starts_with("3 ")) return line.substr(2);
    if (!line.starts_with("5 Cleaning up") && !line.starts_with("7 ")) last = line.substr(2);
  }
  if (!cell.assertion.empty()) return cell.assertion.substr(0, cell.assertion.find(", function"));
  return last;
}

// A table's cell: no line breaks, no bars, and nothing that is not text.
std::string inTable(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '|' || c == '*' || c == '_') result += '\\';
    if (byte >= ' ' && byte != 0x7f) result += c;
  }
  return result;
}

// A section's title, with a link to it as GitHub and GitLab make it.
std::string linkTo(const std::string& table) {
  const auto* const section =
      std::ranges::find_if(kSections, [&](const Section& each) { return each.table == table; });
  std::string anchor;
  for (const char c : std::string(section->title)) {
    if (c == ' ') anchor += '-';
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
  }
  return "[" + std::string(section->title) + "](#" + anchor + ")";
}

void writeGuide(std::ostream& out) {
  struct Entry {
    const char* what;
    std::vector<std::string> tables;
  };
  const std::vector<Entry> entries{
      {"You pulled the USB cable", {"kernel: unplugged", "unplugged"}},
      {"You pulled the network cable, or the printer went off", {"freezes", "is silent", "breaks"}},
      {"You closed the window, logged out, or the program was killed",
       {"window: closed", "window: killed", "quit"}},
      {"You pressed Ctrl-C in a terminal", {"interrupted", "killed"}},
      {"Another program has the printer, or you may not use it",
       {"kernel: not opened", "not opened", "refuses"}},
      {"The printer does not answer", {"kernel: no answer in time", "is silent"}},
      {"The network is poor", {"poor network", "pieces"}},
      {"The firmware file is damaged", {"firmware file"}},
      {"The printer's row went while it was updated", {"withdrawn", "Avahi"}},
      {"Services were restarted or hung, as in an upgrade of the computer",
       {"window: services", "system bus", "Avahi", "system log"}},
      {"The system log has no entries, or not all", {"system log"}},
      {"The log has an error", {}},
  };
  out << "\n**Where to look**\n\n| what happened | sections |\n|---|---|\n";
  for (const Entry& entry : entries) {
    out << "| " << entry.what << " | ";
    if (entry.tables.empty()) out << "Search this page for its words";
    for (const std::string& table : entry.tables) {
      out << (table == entry.tables.front() ? "" : "; ") << linkTo(table);
    }
    out << " |\n";
  }
}

void writeLegend(std::ostream& out) {
  out << R"(# What happens when an update goes wrong

Look for the section that says what happened to you, and in it for the moment at which it happened.
Each line is a test that is run with the others (`tests/faults`), on the program that you have: what is
seen, every entry of the log in its order, what the printer had received, that the program gives back
all that it held, and that a good update follows, by the same program, or by the next one where it had
to be ended. (Of `fwupdatectl`, interrupted or killed, it is not the log that is compared, but what it
reports.) The printer is a virtual one that keeps to [wire-protocol.md](wire-protocol.md). The page is
written from the same table as the tests.

**In short**

- **While the program sends**, whatever goes wrong leaves the printer with the firmware that it had. It
  burns only when it has everything, with the last byte of the closing message
  ([wire-protocol.md](wire-protocol.md)).
- **While the printer burns**, a pulled cable, a closed window or a computer without power do not hinder
  it: it has everything, and needs nobody. It has the new firmware afterwards, though the program could
  not say so. Leave it switched on for some minutes, then update it again: it is up to date. Nothing
  here is about a printer that loses its own power while it burns: do not switch it off.
- **Over the network nobody is in a hurry.** A printer that does not answer is waited for until you quit.
  A pulled cable looks like a printer that freezes while the program sends, and like one that is not
  heard while it burns.
- **Over USB there are time-outs.** If an update failed halfway, pull the cable and plug it in again, or
  switch the printer off and on, before you try again.
)";
  writeGuide(out);
  out << R"(
**What the words mean**

| what is seen | what it means |
|---|---|
| updated | the progress goes away, the line below the list says so; command `DlOk` |
| up to date | the alert says that the printer has this firmware or a newer one; `DlUd` |
| failed | the alert says that it failed; `DlNo`. Close it, and try again |
| waits | the progress stays until you quit; the exit status is 0. Start the program again |
| the program ends | by an assertion, with signal 6 (status 134 in a shell). Start it again |
| the program is closed | as you asked; the exit status is 0 |
| interrupted | `fwupdatectl` says so for each printer, and ends with status 130 |
| killed | the program can say nothing any more; its status is 137. Of `fwupdatectl`, a process that waits for a printer to burn stays for as long as that may take, and keeps others from the printer; then none is left |
| cannot begin | the row is gone, and Download is dimmed |

| the printer afterwards | what it means |
|---|---|
| old firmware, untouched | it has received nothing that it understands |
| old firmware, was only asked | for its model and version |
| old firmware, drops what it got | part of the new one, which it forgets when the connection ends. On USB: pull the cable and plug it in again, or switch the printer off and on, before you try again |
| old firmware, could not burn | it has received everything and says that it failed |
| **new firmware**, not known | it has everything and burns it, and the program does not know |
| new firmware | it restarts with it |

"at N of M" counts bytes, here of a firmware of 28. The log's words are those of its first error, or
else of its last entry.
)";
}

void writeRow(std::ostream& out, const Cell& cell, bool withWhat) {
  out << "| " << inTable(cell.when);
  if (withWhat) out << " | " << inTable(cell.what);
  out << " | " << seen(cell.verdict) << " | " << like(cell.afterwards) << " | "
      << inTable(cell.position) << " | " << inTable(lastWords(cell)) << " |\n";
}

std::vector<Cell> cellsOf(const std::string& table) {
  std::vector<Cell> cells;
  const auto take = [&](const auto& all) {
    std::ranges::copy_if(all, std::back_inserter(cells),
                         [&](const Cell& cell) { return cell.table == table; });
  };
  take(networkCells());
  take(poorNetworkCells());
  take(usbCells());
  take(kernelUsbCells());
  take(windowCells());
  take(localCells());
  take(hostCells());
  take(interruptedCells(Verdict::Interrupted));
  take(interruptedCells(Verdict::Killed));
  return cells;
}

// Where the printer does the same in each line, the section's title says what.
void writeTable(std::ostream& out, const std::vector<Cell>& cells, const char* subject) {
  const auto& first = cells.at(0).what;
  const bool withWhat =
      std::ranges::any_of(cells, [&](const Cell& cell) { return cell.what != first; });
  out << "| when |" << (withWhat ? std::string(" ") + subject + " |" : "")
      << " seen | the printer afterwards | what it had received | the log |\n|---|"
      << (withWhat ? "---|" : "") << "---|---|---|---|\n";
  for (const Cell& cell : cells) writeRow(out, cell, withWhat);
}

}  // namespace

void writeFaultMatrix(std::ostream& out) {
  writeLegend(out);
  std::size_t count = 0;
  for (const Section& section : kSections) {
    const std::vector<Cell> cells = cellsOf(section.table);
    out << "\n## " << section.title << "\n\n" << section.about << "\n\n";
    writeTable(out, cells, section.subject);
    count += cells.size();
  }
  out << R"(
## The computer: no memory

Each allocation that an update over USB makes fails once, some 400 one after the other. Some do no harm
and the update goes well; most end it as failed; before it has begun, it does not begin ("Failed to
download firmware"); and between two steps the program ends with status 1 ("Allocation error
occurred"). Each has its entry in the log, and a good update follows, by the same program, or by the next
one where it has ended.
)";
  out << "\n" << count << " cells, and those of memory.\n";
}
