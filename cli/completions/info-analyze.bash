# Completion of info-analyze for bash; made by info-analyze completion bash.
_info_analyze() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]} place= i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case "$place/${COMP_WORDS[i]}" in
      /apply|/audit|/calibration|/calibration/settings|/calibration/defaults|/calibration/curves|/completion|/config|/diff|/doctor|/explain|/function-version|/help|/models|/query|/queues|/queues/cups|/queues/daemon|/queues/find|/snapshot|/uri) place+=/${COMP_WORDS[i]} ;;
    esac
  done
  case "$place $prev" in
    '/apply --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/apply --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/apply --timeout') :; return ;;
    '/apply --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/apply --jobs') :; return ;;
    '/apply --host') :; return ;;
    '/apply --save-undo') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/apply --undo') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/audit --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/audit --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/audit --timeout') :; return ;;
    '/audit --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/audit --jobs') :; return ;;
    '/audit --host') :; return ;;
    '/audit --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/audit --snapshots') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/audit --since') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/audit --save') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/audit --format') mapfile -t COMPREPLY < <(compgen -W 'text log json' -- "$cur"); return ;;
    '/calibration/settings --queue') :; return ;;
    '/calibration/settings --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/calibration/settings --timeout') :; return ;;
    '/calibration/settings --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/calibration/settings --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/calibration/settings --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/calibration/settings --option') :; return ;;
    '/calibration/settings --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/calibration/defaults --queue') :; return ;;
    '/calibration/defaults --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/calibration/defaults --timeout') :; return ;;
    '/calibration/defaults --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/calibration/defaults --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/calibration/defaults --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/calibration/defaults --option') :; return ;;
    '/calibration/defaults --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/calibration/curves --table') mapfile -t COMPREPLY < <(compgen -W 'LARCH_Def_Calib Linden_Def_Calib_2bit Linden_Def_Calib_4bit PinePoplar_Def_Calib_2bit PinePoplar_Def_Calib_4bit' -- "$cur"); return ;;
    '/calibration/curves --svg') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/config --queue') :; return ;;
    '/config --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/config --timeout') :; return ;;
    '/config --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/config --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/diff --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/diff --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/diff --timeout') :; return ;;
    '/diff --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/diff --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/diff --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/doctor --queue') :; return ;;
    '/doctor --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/doctor --timeout') :; return ;;
    '/doctor --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/doctor --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/doctor --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/doctor --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/doctor --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/explain --queue') :; return ;;
    '/explain --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/explain --timeout') :; return ;;
    '/explain --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/explain --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/explain --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/explain --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/explain --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/function-version --queue') :; return ;;
    '/function-version --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/function-version --timeout') :; return ;;
    '/function-version --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/function-version --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/function-version --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/function-version --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/models --format') mapfile -t COMPREPLY < <(compgen -W 'text json markdown' -- "$cur"); return ;;
    '/query --queue') :; return ;;
    '/query --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/query --timeout') :; return ;;
    '/query --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/query --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/query --snapshot') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/query --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/query --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/queues/cups --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/queues/cups --timeout') :; return ;;
    '/queues/cups --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/queues/cups --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/queues/daemon --driver-folder') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/queues/daemon --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/queues/find --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
    '/snapshot --queue') :; return ;;
    '/snapshot --cups-root') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/snapshot --timeout') :; return ;;
    '/snapshot --config') mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
    '/snapshot --device-info') mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
    '/uri --format') mapfile -t COMPREPLY < <(compgen -W 'text json' -- "$cur"); return ;;
  esac
  case "$place" in
    '') mapfile -t COMPREPLY < <(compgen -W 'apply audit calibration completion config diff doctor explain function-version help models query queues snapshot uri --help --version' -- "$cur") ;;
    /apply) mapfile -t COMPREPLY < <(compgen -W '--driver-folder --device-info --timeout --config --jobs --help --host --dry-run --force --save-undo --undo --quiet --verbose' -- "$cur") ;;
    /audit) mapfile -t COMPREPLY < <(compgen -W '--driver-folder --device-info --timeout --config --jobs --help --host --cups-root --snapshots --live --since --save --all --format --quiet --verbose' -- "$cur") ;;
    /calibration) mapfile -t COMPREPLY < <(compgen -W 'settings defaults curves --help' -- "$cur") ;;
    /calibration/settings) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --option --format --quiet --verbose' -- "$cur") ;;
    /calibration/defaults) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --option --format --quiet --verbose' -- "$cur") ;;
    /calibration/curves) mapfile -t COMPREPLY < <(compgen -W '--help --table --svg --csv --quiet --verbose' -- "$cur") ;;
    /completion) mapfile -t COMPREPLY < <(compgen -W '--help bash zsh --quiet --verbose' -- "$cur") ;;
    /config) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --format --quiet --verbose' -- "$cur") ;;
    /diff) mapfile -t COMPREPLY < <(compgen -W '--help --driver-folder --cups-root --timeout --config --device-info --lpadmin --check --format --quiet --verbose' -- "$cur") ;;
    /doctor) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --device-info --format --quiet --verbose' -- "$cur") ;;
    /explain) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --device-info --all --format --quiet --verbose' -- "$cur") ;;
    /function-version) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --format --quiet --verbose' -- "$cur") ;;
    /help) mapfile -t COMPREPLY < <(compgen -W '--help --quiet --verbose' -- "$cur") ;;
    /models) mapfile -t COMPREPLY < <(compgen -W '--help --format --quiet --verbose' -- "$cur") ;;
    /query) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --driver-folder --snapshot --device-info --format --quiet --verbose' -- "$cur") ;;
    /queues) mapfile -t COMPREPLY < <(compgen -W 'cups daemon find --help' -- "$cur") ;;
    /queues/cups) mapfile -t COMPREPLY < <(compgen -W '--help --cups-root --timeout --config --format --quiet --verbose' -- "$cur") ;;
    /queues/daemon) mapfile -t COMPREPLY < <(compgen -W '--help --driver-folder --format --quiet --verbose' -- "$cur") ;;
    /queues/find) mapfile -t COMPREPLY < <(compgen -W '--help --format --quiet --verbose' -- "$cur") ;;
    /snapshot) mapfile -t COMPREPLY < <(compgen -W '--help --queue --cups-root --timeout --config --device-info --partial --redact --quiet --verbose' -- "$cur") ;;
    /uri) mapfile -t COMPREPLY < <(compgen -W '--help --format --quiet --verbose' -- "$cur") ;;
  esac
}
complete -o filenames -o default -F _info_analyze info-analyze
