# SPDX-License-Identifier: MIT
# Completion of qvvisa for fish. It reads the configuration file and calls no VISA library.

function __qvvisa_lines
    set -l words (commandline -opc)
    for index in (seq (count $words))
        if contains -- $words[$index] -f --file; and test $index -lt (count $words)
            qvvisa -f $words[(math $index + 1)] list --lines 2>/dev/null </dev/null
            return
        end
    end
    qvvisa list --lines 2>/dev/null </dev/null
end

function __qvvisa_aliases
    __qvvisa_lines | string replace -rf '^([^:=][^=]*)=.*' '$1'
end

function __qvvisa_alias_resources
    __qvvisa_lines | string replace -rf '^[^:=][^=]*=' ''
end

function __qvvisa_plain_resources
    __qvvisa_lines | string match -r '^[^:=][^=]*$'
end

function __qvvisa_devices -a family
    __qvvisa_lines | string replace -rf "^:$family"'\[DeviceNo=(\d+).*' '$1' | sort -un
end

# The number of words after the command; nothing, with status 1, when another command is given.
function __qvvisa_arguments_of -a command
    set -l words (commandline -opc)
    set -l seen
    set -l skip 0
    for word in $words[2..-1]
        if test $skip -eq 1
            set skip 0
        else if contains -- $word -f --file --color --timeout
            set skip 1
        else if not string match -q -- '-*' $word
            set -a seen $word
        end
    end
    test "$seen[1]" = $command; and test (count $seen) -ge $argv[2]; and test (count $seen) -le $argv[3]
end

function __qvvisa_needs_command
    not __fish_seen_subcommand_from $__qvvisa_commands
end

set -g __qvvisa_commands where init list get set unset rename add remove serial gpib provider apply lint diff find doctor merge
set -l editing set unset rename add remove serial gpib provider apply

complete -c qvvisa -f
complete -c qvvisa -n __qvvisa_needs_command -a "$__qvvisa_commands"
complete -c qvvisa -s f -l file -r -F
complete -c qvvisa -l json
complete -c qvvisa -l color -x -a 'auto always never'
complete -c qvvisa -s q -l quiet
complete -c qvvisa -s h -l help
complete -c qvvisa -n __qvvisa_needs_command -l version
complete -c qvvisa -n '__fish_seen_subcommand_from where' -l pid -x -a '(__fish_complete_pids)'
complete -c qvvisa -n '__fish_seen_subcommand_from list' -l lines
complete -c qvvisa -n '__fish_seen_subcommand_from get' -s r -l resource
complete -c qvvisa -n '__fish_seen_subcommand_from lint' -l fix
complete -c qvvisa -n '__fish_seen_subcommand_from lint' -l notes
complete -c qvvisa -n '__fish_seen_subcommand_from lint' -l fail-on -x -a 'error warning note'
complete -c qvvisa -n '__fish_seen_subcommand_from lint' -l ignore -x
complete -c qvvisa -n '__fish_seen_subcommand_from lint' -l format -x -a 'gcc github'
complete -c qvvisa -n '__fish_seen_subcommand_from diff' -l window
complete -c qvvisa -n '__fish_seen_subcommand_from doctor' -l list
complete -c qvvisa -n '__fish_seen_subcommand_from doctor' -l timeout -x
complete -c qvvisa -n '__fish_seen_subcommand_from doctor' -l no-library
complete -c qvvisa -n '__fish_seen_subcommand_from find' -l missing
complete -c qvvisa -n '__fish_seen_subcommand_from find' -l identify
complete -c qvvisa -n '__fish_seen_subcommand_from find' -l timeout -x
complete -c qvvisa -n '__qvvisa_arguments_of find 0 0' -a "'GPIB?*' 'USB?*' 'TCPIP?*' 'ASRL?*'"
for option in check diff backup exit-code force
    complete -c qvvisa -n "__fish_seen_subcommand_from $editing" -l $option
end
complete -c qvvisa -n '__fish_seen_subcommand_from serial gpib' -l unset
complete -c qvvisa -n '__fish_seen_subcommand_from apply' -l prune
complete -c qvvisa -n '__qvvisa_arguments_of get 1 1; and not __fish_contains_opt -s r resource' -a '(__qvvisa_aliases)'
complete -c qvvisa -n '__qvvisa_arguments_of get 1 1; and __fish_contains_opt -s r resource' -a '(__qvvisa_alias_resources)'
complete -c qvvisa -n '__qvvisa_arguments_of set 1 1' -a '(__qvvisa_aliases)'
complete -c qvvisa -n '__qvvisa_arguments_of set 2 2' -a '(__qvvisa_alias_resources; __qvvisa_plain_resources)'
complete -c qvvisa -n '__qvvisa_arguments_of unset 1 99' -a '(__qvvisa_aliases)'
complete -c qvvisa -n '__qvvisa_arguments_of rename 1 1' -a '(__qvvisa_aliases)'
complete -c qvvisa -n '__qvvisa_arguments_of add 1 99' -a '(__qvvisa_alias_resources)'
complete -c qvvisa -n '__qvvisa_arguments_of remove 1 99' -a '(__qvvisa_plain_resources)'
complete -c qvvisa -n '__qvvisa_arguments_of serial 1 1' -a '(__qvvisa_devices SerialProperty)'
complete -c qvvisa -n '__qvvisa_arguments_of serial 2 99' -a 'baud-rate={9600,19200,38400,57600,115200} data-bits={7,8} stop-bits={1,1.5,2} parity={none,odd,even,mark,space} flow-control={none,xon-xoff,rts-cts,rts-cts-dtr-dsr}'
complete -c qvvisa -n '__qvvisa_arguments_of gpib 1 1' -a '(__qvvisa_devices GPIBProperty)'
complete -c qvvisa -n '__qvvisa_arguments_of gpib 2 99' -a 'primary-address= secondary-address=none system-controller={yes,no}'
complete -c qvvisa -n '__qvvisa_arguments_of doctor 1 99' -a '(qvvisa doctor --list 2>/dev/null | string replace -r " .*" "")'
complete -c qvvisa -n '__fish_seen_subcommand_from init apply lint diff merge' -F
