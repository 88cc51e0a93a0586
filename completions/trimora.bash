# Completion of trimora and trimora-run in bash: a file first, then options and those values that are letters.
_trimora() {
  local line=${COMP_LINE:0:COMP_POINT} option start letters k
  local word=${line##*[[:blank:]]} # whole, also where bash splits words at "="
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    compopt -o default
    [[ $1 == *trimora-run && $word == -* ]] && mapfile -t COMPREPLY < <(compgen -W "--help --version" -- "$word")
    return
  fi
  if [[ $1 == *trimora-run && $word == --* ]]; then
    case $word in
    --into=* | --table=*) mapfile -t COMPREPLY < <(compgen -f -- "${word#*=}") ;;
    --match=*) mapfile -t COMPREPLY < <(compgen -W "same name order" -- "${word#*=}") ;;
    --format=*) mapfile -t COMPREPLY < <(compgen -W "trimora fasta phylip nexus" -- "${word#*=}") ;;
    *)
      mapfile -t COMPREPLY < <(compgen -W "--match= --name-end= --partitions --model= --format= --into= --columns
        --table= --keep-going --strict" -- "$word")
      [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace
      return
      ;;
    esac
    [[ $COMP_WORDBREAKS == *=* ]] || COMPREPLY=("${COMPREPLY[@]/#/${word%%=*}=}")
    return
  fi
  for option in t=PDC b1= b2= b3= b4= b0= b5=NHA b6=YN e= s=YN p=YTSN v= k=YN d=YN n=YN u=YN a=YN c=YN w=YN; do
    start=-${option%%=*}= letters=${option#*=}
    if [[ $start == "$word"* && $start != "$word" ]]; then
      COMPREPLY+=("$start")
      compopt -o nospace
    elif [[ $word == "$start"* ]]; then
      word=${word#"$start"}
      [[ $COMP_WORDBREAKS == *=* ]] && start= # only what stands behind the "=" is replaced
      for ((k = 0; k < ${#letters}; ++k)); do
        [[ ${letters:k:1} == "$word"* ]] && COMPREPLY+=("$start${letters:k:1}")
      done
      return
    fi
  done
} && complete -F _trimora trimora trimora-run
