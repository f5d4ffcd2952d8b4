# Completion of nox-fetch for bash.

_nox_fetch()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    # Bash takes the equals sign of --output=FILE for a word of its own.
    if [[ $word == = ]]; then
        word='' previous="$previous="
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    previous=${previous%=}
    case $previous in
        -a | --batch-file | -o | --output | --tool | --log)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        -P | --folder | --pycache)
            mapfile -t COMPREPLY < <(compgen -d -- "$word")
            return
            ;;
        -f | --format | -A | --audio | --items | --max-height)
            return
            ;;
    esac
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "-l --list --json -f --format -A --audio --no-audio --max-height --mp3 --items
            -a --batch-file -c --continue -o --output -P --folder --tool --pycache --log -v --verbose -q --quiet -h --help --version --tool-version" -- "$word")
    fi
}

complete -o filenames -F _nox_fetch nox-fetch
