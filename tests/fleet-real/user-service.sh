#!/usr/bin/env bash
# user-service.sh PROGRAMS: what "kestrova-cli startup" sets up, under a systemd of the user's own and beside a real
# journal: started, killed, stopped. Both live in a /run of their own, as do all processes in a space of theirs; nothing
# of the machine's is seen or changed. The programs lie in PROGRAMS; the list is that of KESTROVA_REGISTRY. Exit code
# 77 where no systemd can run.
set -euo pipefail
programs=$1
if [ "${2:-}" != inside ]; then
  command -v unshare >/dev/null && [ -x /lib/systemd/systemd ] && [ -x /lib/systemd/systemd-journald ] || exit 77
  [ -e /etc/machine-id ] && unshare --mount --pid --fork true 2>/dev/null || exit 77
  exec unshare --mount --pid --fork --kill-child --mount-proc "$0" "$programs" inside
fi

mount -t tmpfs tmpfs /run
mount -t tmpfs tmpfs /var/log
mkdir -p /run/systemd/system /run/systemd/journald.conf.d
mkdir -m 700 /run/user
printf '[Journal]\nStorage=volatile\nAudit=\nReadKMsg=no\nRateLimitBurst=0\n' >/run/systemd/journald.conf.d/test.conf
echo 0123456789abcdef0123456789abcdef >/run/machine-id
mount --bind /run/machine-id /etc/machine-id
export XDG_RUNTIME_DIR=/run/user
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS

until_true() { until "$@"; do sleep 0.1; done; }
unit() { systemctl --user show --value -p "$1" kestrova-watch; }
is() { [ "$(unit "$1")" = "$2" ]; }
journal() { journalctl -q --no-pager -o cat -t "$1"; }
says() { journal "$1" | grep -q -- "$2"; }

/lib/systemd/systemd-journald 2>/dev/null &
until_true [ -S /run/systemd/journal/stdout ]
/lib/systemd/systemd --user >/run/systemd.log 2>&1 &
for try in {1..200}; do
  [ -S /run/user/systemd/private ] && break
  kill -0 $! 2>/dev/null || { cat /run/systemd.log; echo "no systemd of the user's own runs here"; exit 77; }
  sleep 0.1
done
until_true systemctl --user --quiet is-active basic.target

echo "on: $("$programs/kestrova-cli" startup on | head -1)"
says_it_watches() { says kestrova-cli '^Watching '; }
until_true says_it_watches
echo "state: $(unit ActiveState)"
systemctl --user stop kestrova-watch
echo "stopped: $(unit ActiveState), $(unit Result), $(unit ExecMainStatus)"

# From here on with a clock that hurries from pass to pass, and less patience after a failure.
folder=$XDG_CONFIG_HOME/systemd/user/kestrova-watch.service.d
mkdir -p "$folder"
command=$(sed -n 's/^ExecStart="[^"]*" watch//p' "$folder/../kestrova-watch.service")
printf '[Service]\nExecStart=\nExecStart="%s"%s\nRestartSec=100ms\n' "$programs/hurried-watch" "$command" >"$folder/hurried.conf"
systemctl --user daemon-reload
systemctl --user start kestrova-watch
has_passed() { says hurried-watch ' checked in '; }
until_true has_passed
systemctl --user kill --signal=KILL kestrova-watch
until_true is NRestarts 1
until_true is ActiveState active
echo "killed: $(unit ActiveState) again"
twice() { [ "$(journal hurried-watch | grep -c '^Watching ')" = 2 ]; }
until_true twice
echo "off: $("$programs/kestrova-cli" startup off)"
echo "then: $(unit ActiveState), $(unit Result), $(unit ExecMainStatus)"
echo "journal:"
journal hurried-watch | sed '/ checked in /q'
