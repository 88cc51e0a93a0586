# Completion of trimora and trimora-run in bash: files, options and what these take. trimora takes a file first.
_trimora() {
  # As in the help. FILE and FOLDER are looked for; what else an option takes is typed.
  local options=( # made by scripts/options.sh: options of both programs
    -t='P|D|C'
    -b1=
    -b2=
    -b3=
    -b4=
    -b0=
    -b5='N|H|A'
    -b6='Y|N'
    -s='Y|N'
    -p='Y|T|S|N'
    -v=
    -k='Y|N'
    -d='Y|N'
    -n='Y|N'
    -u='Y|N'
    -e=
    -a='Y|N'
    -c='Y|N'
    -w='Y|N'
  ) # end of options of both programs
  local own=( # made by scripts/options.sh: options of trimora-run
    --preset='classic|relaxed|none'
    --format='fasta|phylip|nexus|trimora'
    --unknown='keep|x'
    --into=FOLDER
    --columns
    --match='same|name|order'
    --name-end=
    --name-begin=
    --name-parts=
    --codons=
    --codon-names=FILE
    --code=
    --join
    --occupancy=FILE
    --species=FILE
    --min-filled=
    --min-species=
    --min-columns=
    --min-genes=
    --partitions
    --model=
    --name=
    --keep-going
    --table=FILE
    --overview=
    --strict
    --quiet
    --help
    --version
  ) # end of options of trimora-run
  local line=${COMP_LINE:0:COMP_POINT} before option start values apart=
  local word=${line##*[[:blank:]]} # whole, also where bash splits words at "="
  COMPREPLY=()
  if [[ $1 == *trimora-run ]]; then
    options+=("${own[@]}")
    before=${line%"$word"}
    before=${before%"${before##*[![:blank:]]}"}
    before=${before##*[[:blank:]]}
    if [[ $before == -* && " ${options[*]}" == *" $before="* ]]; then
      word=$before=$word apart=yes # its value, in a word of its own
    elif [[ $word != -* ]]; then
      compopt -o default
      return
    fi
  elif ((COMP_CWORD == 1)); then
    compopt -o default
    return
  fi
  for option in "${options[@]}"; do
    start=${option%%=*} values=${option#*=}
    [[ $option == *=* ]] && start+="="
    if [[ $start == "$word"* && $start != "$word" ]]; then
      COMPREPLY+=("$start")
      [[ $start == *= ]] && compopt -o nospace
    elif [[ $start == *= && $word == "$start"* ]]; then
      word=${word#"$start"}
      [[ $apart || $COMP_WORDBREAKS == *=* ]] && start= # only what is after the "=" is replaced
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
