# bash completion for toolset(1)

_toolset()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} options=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "list show cat check unpack pack diff merge relocate \
            report icons --help --version" -- "$cur")
        return
    fi
    case $prev in
        --code-page)
            mapfile -t COMPREPLY < <(compgen -W "874 1250 1251 1252 1253 1254 1255 1256 1257 1258" -- "$cur")
            return ;;
        --level)
            mapfile -t COMPREPLY < <(compgen -W "hint warning error" -- "$cur")
            return ;;
        --paper)
            mapfile -t COMPREPLY < <(compgen -W "A3 A4 A5 B5 Letter Legal Executive Tabloid" -- "$cur")
            return ;;
        --macros)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -d -- "$cur")
            return ;;
        --drive | --size)
            return ;;
    esac
    if [[ $cur == -* ]]; then
        case $command in
            list) options=--json ;;
            show) options="--help-text --rtf --picture" ;;
            check) options="--json --drive --macros --level" ;;
            pack) options=--no-backup ;;
            diff) options="--json --help-text" ;;
            merge) options="--output --no-backup" ;;
            relocate) options="--output --dry-run --no-backup" ;;
            report) options="--output --paper" ;;
            icons) options=--size ;;
        esac
        mapfile -t COMPREPLY < <(compgen -W "$options --code-page --help" -- "$cur")
        return
    fi
    compopt -o filenames 2>/dev/null
    # What the word is depends on the command and its place.
    case $command:$COMP_CWORD in
        pack:2 | unpack:3 | icons:3 | relocate:[23])
            mapfile -t COMPREPLY < <(compgen -d -- "$cur") ;;
        icons:* | report:*)
            mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
        show:*)
            if [ "$COMP_CWORD" -gt 2 ] && [[ $prev != --picture ]]; then
                local IFS=$'\n'
                mapfile -t COMPREPLY < <(compgen -W "$(toolset list -- "${COMP_WORDS[2]}" 2>/dev/null |
                    cut -f1 | sed 's/[^[:alnum:]_.-]/\\&/g')" -- "$cur")
                return
            fi
            mapfile -t COMPREPLY < <(compgen -d -- "$cur"; compgen -f -X '!*.@(bmt|BMT)' -- "$cur") ;;
        *)
            # Files of any name in place of those of the usual one where there is none.
            mapfile -t COMPREPLY < <(compgen -d -- "$cur"; compgen -f -X '!*.@(bmt|BMT)' -- "$cur")
            [ ${#COMPREPLY[@]} -gt 0 ] || mapfile -t COMPREPLY < <(compgen -f -- "$cur") ;;
    esac
} && complete -F _toolset toolset
