# bash completion for snapwb

_snapwb()
{
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W "grab open state --help --version" -- "$word")
    elif [[ $before == --output || $command == open ]]; then
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    elif [[ $before == --delay ]]; then
        mapfile -t COMPREPLY < <(compgen -W "3 5 10" -- "$word")
    elif [[ $command == grab && $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--output --force --copy --delay --pointer" -- "$word")
    elif [[ $command == grab ]]; then
        mapfile -t COMPREPLY < <(compgen -W "region ellipse polygon screen monitor window active scroll last" -- "$word")
    fi
}

complete -F _snapwb snapwb
