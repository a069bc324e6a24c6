# Completion of the options of diagsh, for bash.

# Offers the files that fit a pattern, and the folders on the way to them.
_diagsh_files()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <({ compgen -d -- "$2"; compgen -f -X "!$1" -- "$2"; } | sort -u)
}

# What may stand behind "decode" and the words that stand there already.
_diagsh_decode()
{
    if [[ $1 == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--json --help -h" -- "$1")
    elif [[ $2 =~ ^(--json )?$ ]]; then
        mapfile -t COMPREPLY < <(compgen -W "spd sfp mfg" -- "$1")
    else
        _diagsh_files '*' "$1"
    fi
}

_diagsh()
{
    local word=$2 name='' at=$COMP_CWORD option
    local options="--help --force --keep-going --json --junit --log --log-file --board --sim
        --state --dtb --bus --i2c --version -c -h"
    local types="test-error system-error error warning system info progress result
        hw-debug sw-debug all"
    COMPREPLY=()

    # Bash takes a = for a word; at once behind it, for the word at the cursor.
    [[ ${COMP_WORDS[at]} == = ]] || ((at -= 1))
    if [[ ${COMP_WORDS[at]} == = ]]; then
        name=${COMP_WORDS[at - 1]}
        ((at -= 2))
        [[ ${COMP_WORDS[at]} == = ]] && ((at -= 1))
    fi
    option=${COMP_WORDS[at]}
    if [[ $name == --* ]]; then
        option=$name
        name=''
    fi

    # Behind decode the kinds and a file; it takes no other options.
    local before="${COMP_WORDS[*]:1:COMP_CWORD-1} "
    if [[ $before =~ ^('--json ')?'decode '(.*)$ ]]; then
        _diagsh_decode "$word" "${BASH_REMATCH[2]}"
        return
    fi

    case $option in
    -c) ;;
    --sim | --dtb) _diagsh_files '*.dtb' "$word" ;;
    --bus)
        [[ $name ]] && _diagsh_files '/dev/i2c-*' "$word"  # behind the node
        ;;
    --board) _diagsh_files '*.so' "$word" ;;
    --junit | --log-file) _diagsh_files '*' "$word" ;;
    --state)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$word")
        ;;
    --log)
        if [[ $name ]]; then
            mapfile -t COMPREPLY < <(compgen -W "off $(echo {0..15})" -- "$word")
        else
            compopt -o nospace 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -W "$types" -S = -- "$word")
        fi
        ;;
    *)
        if [[ $word == -* ]]; then
            # Behind -- they are the board's.
            [[ " ${COMP_WORDS[*]:0:COMP_CWORD} " == *" -- "* ]] && options="--sim --state --dtb --bus
                --i2c"
            mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
        else
            _diagsh_files '*' "$word"
            # As the first word; offered only where it is begun, since files are more.
            [[ $before =~ ^('--json ')?' '?$ && $word && decode == "$word"* ]] &&
                COMPREPLY+=(decode)
        fi
        ;;
    esac
}

complete -F _diagsh diagsh
