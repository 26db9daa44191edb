# SPDX-License-Identifier: MIT
# Completion of qvvisa for bash. It reads the configuration file and calls no VISA library.

# The file's lines in its own syntax, of the file that -f names.
_qvvisa_lines() {
    local i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        -f | --file)
            qvvisa -f "${COMP_WORDS[i + 1]}" list --lines 2>/dev/null </dev/null
            return
            ;;
        esac
    done
    qvvisa list --lines 2>/dev/null </dev/null
}

# Offers the words on standard input; a colon must not break a resource string into words.
_qvvisa_offer() {
    local word current=$1
    while IFS= read -r word; do
        if [[ ${word^^} == "${current^^}"* ]]; then
            COMPREPLY+=("$word")
        fi
    done
    if declare -F __ltrim_colon_completions >/dev/null; then
        __ltrim_colon_completions "$current"
    fi
}

_qvvisa() {
    local current previous command='' i
    COMPREPLY=()
    if declare -F _get_comp_words_by_ref >/dev/null; then
        local words cword
        _get_comp_words_by_ref -n := cur prev words cword 2>/dev/null
        current=$cur previous=$prev
        local COMP_WORDS=("${words[@]}") COMP_CWORD=$cword
    else
        current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    fi
    local commands='where init list get set unset rename add remove serial gpib provider apply lint diff find doctor merge'
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        -f | --file | --color | --timeout) i=$((i + 1)) ;;
        -*) ;;
        *)
            command=${COMP_WORDS[i]}
            break
            ;;
        esac
    done
    local arguments=$((COMP_CWORD - i))
    case $previous in
    -f | --file)
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    --color)
        _qvvisa_offer "$current" < <(printf '%s\n' auto always never)
        return
        ;;
    --fail-on)
        _qvvisa_offer "$current" < <(printf '%s\n' error warning note)
        return
        ;;
    --format)
        _qvvisa_offer "$current" < <(printf '%s\n' gcc github)
        return
        ;;
    --timeout) return ;;
    esac
    if [[ $current == -* ]]; then
        local options='--file --json --color --quiet --help'
        case $command in
        '') options+=' --version' ;;
        where) options+=' --pid' ;;
        list) options+=' --lines' ;;
        get) options+=' --resource' ;;
        lint) options+=' --fix --notes --fail-on --ignore --format' ;;
        diff) options+=' --window' ;;
        doctor) options+=' --list --timeout --no-library' ;;
        find) options+=' --missing --identify --timeout' ;;
        init | merge) ;;
        *) options+=' --check --diff --backup --exit-code --force' ;;
        esac
        case $command in
        serial | gpib) options+=' --unset' ;;
        apply) options+=' --prune' ;;
        esac
        # shellcheck disable=SC2086 # one word each
        _qvvisa_offer "$current" < <(printf '%s\n' $options)
        return
    fi
    case $command in
    '')
        # shellcheck disable=SC2086 # one word each
        _qvvisa_offer "$current" < <(printf '%s\n' $commands)
        ;;
    get | unset)
        if [[ " ${COMP_WORDS[*]} " == *' -r '* || " ${COMP_WORDS[*]} " == *' --resource '* ]]; then
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^[^:=][^=]*=//p')
        else
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^\([^:=][^=]*\)=.*/\1/p')
        fi
        ;;
    set | rename)
        if [ $arguments -eq 1 ]; then
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^\([^:=][^=]*\)=.*/\1/p')
        elif [ "$command" = set ]; then
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^[^:=][^=]*=//p; /^[^:=][^=]*$/p')
        fi
        ;;
    add)
        _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^[^:=][^=]*=//p')
        ;;
    remove)
        _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n '/^[^:=][^=]*$/p')
        ;;
    serial)
        if [ $arguments -eq 1 ]; then
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^:SerialProperty\[DeviceNo=\([0-9]*\).*/\1/p' | sort -un)
        else
            _qvvisa_offer "$current" < <(printf '%s\n' baud-rate={9600,19200,38400,57600,115200} \
                data-bits={7,8} stop-bits={1,1.5,2} parity={none,odd,even,mark,space} \
                flow-control={none,xon-xoff,rts-cts,rts-cts-dtr-dsr})
        fi
        ;;
    gpib)
        if [ $arguments -eq 1 ]; then
            _qvvisa_offer "$current" < <(_qvvisa_lines | sed -n 's/^:GPIBProperty\[DeviceNo=\([0-9]*\).*/\1/p' | sort -un)
        else
            _qvvisa_offer "$current" < <(printf '%s\n' primary-address= secondary-address=none \
                system-controller={yes,no})
        fi
        ;;
    doctor)
        _qvvisa_offer "$current" < <(qvvisa doctor --list 2>/dev/null | sed 's/ .*//')
        ;;
    find)
        _qvvisa_offer "$current" < <(printf '%s\n' {GPIB,USB,TCPIP,ASRL}'?*')
        ;;
    init | apply | lint | diff | merge)
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        ;;
    esac
}

complete -F _qvvisa qvvisa
