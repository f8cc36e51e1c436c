#compdef @programs@
# Completion for zsh.

_palisor_list() {
    case $1 in
@lists@
    esac
}

_palisor() {
    local product=${words[1]:t} waiting= word
    local -a given offered
    if [[ $product = palisor-doctor ]]; then given=(doctor); fi
    for word in "${(@)words[2,CURRENT-1]}"; do
        if [[ -n $waiting ]]; then
            if [[ $waiting = --product ]]; then product=$word; fi
            waiting=
        elif [[ $word = --product=* ]]; then
            product=${word#*=}
        elif [[ $word = -* && $given[1] != settings ]]; then
            if [[ -n $(_palisor_list "after $word") ]]; then waiting=$word; fi
        else
            given+=("$word")
        fi
    done

    if [[ -n $waiting ]]; then
        offered=("${(@f)$(_palisor_list "after $waiting")}")
    elif [[ $given[1] = doctor ]]; then
        offered=("${(@f)$(_palisor_list doctor)}")
    elif [[ $words[CURRENT] = -* && $#given -lt 3 ]]; then
        offered=("${(@f)$(_palisor_list options)}")
        if [[ $#given -eq 0 ]]; then offered+=("${(@f)$(_palisor_list start)}"); fi
    elif [[ $#given -eq 0 ]]; then
        offered=("${(@f)$(_palisor_list commands)}")
    elif [[ $#given -eq 1 ]]; then
        offered=("${(@f)$(_palisor_list "after $given[1]")}")
    elif [[ $#given -eq 2 && $given[1] = settings && $given[2] != list ]]; then
        offered=("${(@f)$(_palisor_list "settings $product")}")
    elif [[ $#given -eq 3 && $given[2] = set ]]; then
        offered=("${(@f)$(_palisor_list "value $given[3]")}")
    fi

    case $offered in
    FILE) _files && return ;;
    DIR) _files -/ && return ;;
    MONITOR)
        offered=("${(@f)$($words[1] --product "$product" status 2>/dev/null |
            sed -n 's/^monitor \([^ ]*\) .*/\1/p')}")
        ;;
    esac
    offered=(${offered:#})
    _describe word offered
}

_palisor "$@"
