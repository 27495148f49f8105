# Completion of qelctl for bash. What there is to complete is asked of the tool: its help names the
# commands, options and arguments, its other commands the instruments and what they can do.

_qelctl_tool()
{
    qelctl "${plugins[@]}" --log quiet "$@" 2>/dev/null
}

# "--option VALUE", one a line.
_qelctl_options()
{
    _qelctl_tool $command --help | sed -nE 's/^  (-., )?(--[a-z-]+)( ([^ ]+))?  .*/\2 \4/p'
}

_qelctl_commands()
{
    _qelctl_tool --help | awk '/^$/ { lines = "" } /^  [a-z]/ { lines = lines $1 "\n" }
                               END { printf "%s", lines }'
}

# The values of the key $1 in indented JSON.
_qelctl_values()
{
    sed -nE 's/^ *"'"$1"'": "(.*)",?$/\1/p'
}

_qelctl_settings()
{
    _qelctl_tool show "${arguments[0]}" |
        awk -v feature="${arguments[1]}" '/^    [^ ]/ { found = index($1, feature) == 1 }
                                          /^        [^ ]/ && found { print $1 "=" }'
}

# Offers what a placeholder of the help, such as DEVICE, stands for.
_qelctl_offer()
{
    local candidates='' candidate
    case $1 in
    COMMAND) candidates=$(_qelctl_commands) ;;
    DEVICE) candidates=$(_qelctl_tool list --json | _qelctl_values serial) ;;
    FEATURE) candidates=$(_qelctl_tool show "${arguments[0]}" --json | _qelctl_values argument) ;;
    KEY=VALUE) candidates=$(_qelctl_settings) ;;
    D) candidates=$(_qelctl_tool list --json | _qelctl_values driver | sort -u) ;;
    I) candidates=$'unknown\nsimulator\nserial\nusb-hid\nnetwork' ;;
    *RESULT*) candidates=$(_qelctl_tool results --json | _qelctl_values result) ;;
    LOCALE) candidates=$'de\nen' ;;
    OPTION) candidates=$(_qelctl_options | cut -d ' ' -f 1) ;;
    DIR | *DIRECTORY*)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$cur")
        return
        ;;
    *FILE* | *PATH* | *PLUGIN*)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
        return
        ;;
    *'|'*) candidates=${1//|/$'\n'} ;;
    esac
    while IFS= read -r candidate; do
        [[ -n $candidate && $candidate == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$candidate")")
    done <<<"$candidates"
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace 2>/dev/null
    return 0
}

_qelctl()
{
    local cur=${COMP_WORDS[COMP_CWORD]} command='' plugins=() arguments=()
    local options index word value placeholders
    COMPREPLY=()
    options=$(_qelctl_options)

    # What has been said before the cursor, and whether the option there waits for its value.
    for ((index = 1; index < COMP_CWORD; ++index)); do
        word=${COMP_WORDS[index]}
        value=
        if [[ $word == = ]]; then # what the shell has split at an "="
            ((++index))
        elif [[ $word == -* ]]; then
            value=$(sed -n "s/^$word //p" <<<"$options")
            [[ -n $value ]] && ((++index))
            [[ $word == --plugins ]] && plugins+=(--plugins "${COMP_WORDS[index]}")
        elif [[ -z $command ]]; then
            command=$word
            options=$(_qelctl_options)
        else
            arguments+=("$word")
        fi
    done

    if [[ $index -gt $COMP_CWORD ]]; then
        _qelctl_offer "$value"
    elif [[ $cur == -* ]]; then
        _qelctl_offer OPTION
    else
        read -ra placeholders < <(_qelctl_tool $command --help | sed -nE '1s/^[^]]*\] ?//p')
        index=${#arguments[@]}
        if [[ ${#placeholders[@]} -gt 0 && $index -ge ${#placeholders[@]} &&
            ${placeholders[-1]} == *...* ]]; then
            index=-1
        fi
        _qelctl_offer "${placeholders[index]}"
    fi
}

complete -F _qelctl qelctl
