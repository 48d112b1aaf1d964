# Completion of the command line of velun for bash.

# Offers the lines of the standard input that begin with $1. Names come from any program that plays
# sound, so they are quoted, and never expanded as compgen -W does.
_velun_names() {
  local name quoted
  COMPREPLY=()
  while IFS= read -r name; do
    printf -v quoted %q "$name"
    if [[ $name == "$1"* || $quoted == "$1"* ]]; then COMPREPLY+=("$quoted"); fi
  done
}

_velun() {
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  if [ "$COMP_CWORD" = 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "captions --help --version" -- "$word")
    return
  fi
  case $before in
    -i | --input) mapfile -t COMPREPLY < <(compgen -W "computer microphone both" -- "$word") ;;
    -f | --format) mapfile -t COMPREPLY < <(compgen -W "text srt vtt json" -- "$word") ;;
    -d | --device)
      _velun_names "$word" < <(velun captions --list-devices | grep -v ^program | cut -f2)
      ;;
    -p | --program | -x | --except)
      _velun_names "$word" < <(velun captions --list-devices | grep ^program | cut -f2)
      ;;
    -m | --model) _velun_names "$word" < <(velun captions --list-models | cut -f1) ;;
    -l | --language | -t | --translate) COMPREPLY=() ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--input --device --program --except --language --model --format --translate \
          --times --drafts --list-devices --list-models --help" -- "$word")
      else
        compopt -o filenames
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
      fi
      ;;
  esac
}
complete -F _velun velun
