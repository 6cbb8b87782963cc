# Completion of fwupdatectl(1) for fish.

# A column of the list of printers. Names that look like options are left out.
function __fwupdatectl_listed # the column's number
    fwupdatectl list --wait 1 2>/dev/null | cut -f $argv[1] | string match --invert --regex '^(-|$)'
end

function __fwupdatectl_in # commands
    __fish_seen_subcommand_from $argv
end

complete -c fwupdatectl -f
complete -c fwupdatectl -s h -l help -d 'Print the options'
complete -c fwupdatectl -s e -l verbose -d 'Write the log, too'
complete -c fwupdatectl -n __fish_use_subcommand -l version -d 'Print the version'
complete -c fwupdatectl -n __fish_use_subcommand -a list -d 'List printers'
complete -c fwupdatectl -n __fish_use_subcommand -a update -d 'Update printers'
complete -c fwupdatectl -n __fish_use_subcommand -a show -d 'Show a firmware file'
complete -c fwupdatectl -n __fish_use_subcommand -a check -d 'Check this machine'

complete -c fwupdatectl -n '__fwupdatectl_in list update show check' -l json -d 'Write JSON lines'
complete -c fwupdatectl -n '__fwupdatectl_in list update' -x -l wait -d 'Look for printers so long'

complete -c fwupdatectl -n '__fwupdatectl_in list' -l watch -d 'Go on'
complete -c fwupdatectl -n '__fwupdatectl_in list' -l versions -d 'Ask each for its version'
complete -c fwupdatectl -n '__fwupdatectl_in list' -x -l timeout -d 'Wait so long for its answer'

complete -c fwupdatectl -n '__fwupdatectl_in update' -l all -d 'All printers that are found'
complete -c fwupdatectl -n '__fwupdatectl_in update' -x -l address -d 'A printer on another network'
complete -c fwupdatectl -n '__fwupdatectl_in update' -x -l serial -d 'A printer on USB' \
    -a '(__fwupdatectl_listed 3)'
complete -c fwupdatectl -n '__fwupdatectl_in update' -s y -l yes -d 'Do not ask'
complete -c fwupdatectl -n '__fwupdatectl_in update' -x -s j -l jobs -d 'Update so many at a time'
complete -c fwupdatectl -n '__fwupdatectl_in update' -x -l timeout -d 'End each after so long'
complete -c fwupdatectl -n '__fwupdatectl_in update' -l verify -d 'Ask for the version afterwards'
complete -c fwupdatectl -n '__fwupdatectl_in update' -x -l verify-wait -d 'Wait so long for it'
complete -c fwupdatectl -n '__fwupdatectl_in update' -l quiet -d 'Tell only of failures'
complete -c fwupdatectl -n '__fwupdatectl_in update' -a '(__fwupdatectl_listed 1)'

complete -c fwupdatectl -n '__fwupdatectl_in show' -F
