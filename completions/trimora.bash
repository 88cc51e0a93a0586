# Completion of trimora and trimora-run in bash: a file first, then options and what they take.
_trimora() {
  # As in the help. Words in capitals stand for what is typed; FILE and FOLDER are looked for.
  local options=(-t='P|D|C' -b1= -b2= -b3= -b4= -b0= -b5='N|H|A' -b6='Y|N' -e= -s='Y|N' -p='Y|T|S|N' -v= -k='Y|N' -d='Y|N'
    -n='Y|N' -u='Y|N' -a='Y|N' -c='Y|N' -w='Y|N')
  local own=( # of trimora-run alone, which stand anywhere
    --match='same|name|order'
    --name-end=
    --partitions
    --model=
    --format='trimora|fasta|phylip|nexus'
    --into=FOLDER
    --columns
    --table=FILE
    --keep-going
    --strict
  )
  local line=${COMP_LINE:0:COMP_POINT} option start values
  local word=${line##*[[:blank:]]} # whole, also where bash splits words at "="
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    compopt -o default
    options=(--help --version)
    [[ $1 == *trimora-run && $word == -* ]] || return
  fi
  [[ $1 == *trimora-run ]] && options+=("${own[@]}")
  for option in "${options[@]}"; do
    start=${option%%=*} values=${option#*=}
    [[ $option == *=* ]] && start+="="
    if [[ $start == "$word"* && $start != "$word" ]]; then
      COMPREPLY+=("$start")
      [[ $start == *= ]] && compopt -o nospace
    elif [[ $start == *= && $word == "$start"* ]]; then
      word=${word#"$start"}
      [[ $COMP_WORDBREAKS == *=* ]] && start= # only what stands behind the "=" is replaced
      [[ $values == *"|"* ]] && start+=${word%"${word##*,}"} word=${word##*,} # several words, as in --format
      case $values in
        FILE) mapfile -t COMPREPLY < <(compgen -f -- "$word") && compopt -o filenames ;;
        FOLDER) mapfile -t COMPREPLY < <(compgen -d -- "$word") && compopt -o filenames ;;
        *"|"*) mapfile -t COMPREPLY < <(compgen -W "${values//|/ }" -- "$word") ;;
      esac
      COMPREPLY=("${COMPREPLY[@]/#/$start}")
      return
    fi
  done
} && complete -F _trimora trimora trimora-run
