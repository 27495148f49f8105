# Completion of qeldevicesd for bash. Commands and options are those that its help names.

_qeldevicesd()
{
    local cur=${COMP_WORDS[COMP_CWORD]} candidates=''
    COMPREPLY=()
    case ${COMP_WORDS[COMP_CWORD - 1]} in
    revoke) candidates=$(qeldevicesd clients 2>/dev/null | awk '{ print $1 }') ;;
    --role) candidates='observe operate service' ;;
    --state | --plugins)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$cur")
        return
        ;;
    --socket)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        return
        ;;
    *)
        if [[ $cur == -* ]]; then
            candidates=$(qeldevicesd --help | sed -nE 's/^  (-., )?(--[a-z-]+).*/\2/p')
        elif [[ $COMP_CWORD -eq 1 ]]; then
            candidates=$(qeldevicesd --help | sed -nE 's/^  qeldevicesd ([a-z]+).*/\1/p')
        fi
        ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$candidates" -- "$cur")
}

complete -F _qeldevicesd qeldevicesd
