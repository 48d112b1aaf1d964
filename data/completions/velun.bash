# Completion of the command line of velun for bash.
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
      local IFS=$'\n'
      mapfile -t COMPREPLY < <(compgen -W "$(velun captions --list-devices | grep -v ^program | cut -f2)" -- "$word")
      ;;
    -p | --program | -x | --except)
      local IFS=$'\n'
      mapfile -t COMPREPLY < <(compgen -W "$(velun captions --list-devices | grep ^program | cut -f2)" -- "$word")
      ;;
    -m | --model)
      mapfile -t COMPREPLY < <(compgen -W "$(velun captions --list-models | cut -f1)" -- "$word")
      ;;
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
