# bash completion for battery_host                           -*- shell-script -*-

# The options, the diagnostics' test letters, the device ids and the
# built-in scenarios, which the program itself lists (so a new scenario
# needs no change here).
_battery_host() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local program=${1:-battery_host}
    COMPREPLY=()

    # "--quick=h" comes as "--quick" "=" "h" (bash splits words at '=').
    if [[ $cur == "=" ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 1]}
        cur=""
    elif [[ $prev == "=" ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    case $prev in
        --scenario)
            local names
            names=$("$program" --scenario list 2>/dev/null | awk '{print $1}')
            COMPREPLY=($(compgen -W "list $names" -- "$cur"))
            COMPREPLY+=($(compgen -f -X '!*.json' -- "$cur") $(compgen -d -- "$cur"))
            return
            ;;
        --module | --report | --metrics | --history-db)
            COMPREPLY=($(compgen -f -- "$cur"))
            return
            ;;
        --quick)
            COMPREPLY=($(compgen -W "h t battery-health-test battery-temperature-test" -- "$cur"))
            return
            ;;
        --extended)
            COMPREPLY=($(compgen -W "d c discharge-test charge-test" -- "$cur"))
            return
            ;;
        --duration)
            COMPREPLY=($(compgen -W "5 10 15 20" -- "$cur"))
            return
            ;;
        --run | --time-scale)
            return
            ;;
    esac

    case $cur in
        -Q*) COMPREPLY=($(compgen -W "-Q -Qh -Qt -Qht" -- "$cur")) ;;
        -E*) COMPREPLY=($(compgen -W "-E -Ed -Ec -Edc" -- "$cur")) ;;
        -M*) COMPREPLY=(-Mbattery) ;;
        -*)
            COMPREPLY=($(compgen -W "-Mbattery -Q --quick --quick= -E --extended --extended=
                --module --scenario --this-machine --list --run --duration --hold-above-charge
                -y --yes --time-scale --json --keys --report --metrics --history-db
                --no-history --history --version -h --help" -- "$cur"))
            ;;
        *) COMPREPLY=($(compgen -W "0 1 bat" -- "$cur")) ;;
    esac
    # An option that takes "=" gets no space after it.
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && type compopt &>/dev/null; then
        compopt -o nospace
    fi
}
complete -F _battery_host battery_host
