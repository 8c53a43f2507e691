#!/bin/bash
# Run by systemd in a tree where vantle-service is installed: the unit's whole life. The last line is the outcome.
set -eEo pipefail
exec >/vantle/unit.log 2>&1
trap 'echo "failed in line $LINENO"; systemctl --no-block poweroff 2>/dev/null' ERR

as_service="setpriv --reuid vantle-service --regid vantle-service --clear-groups"
data=/var/lib/vantle-service

# say <request>: the answer of the running service.
say() {
  exec 3<>/dev/tcp/127.0.0.1/8787
  printf '%b' "$1" >&3
  cat <&3
}

echo "== nothing starts without a configuration"
systemctl start vantle-service
[ "$(systemctl show -P ConditionResult vantle-service)" = no ]
[ "$(systemctl is-active vantle-service || true)" = inactive ]

echo "== with one it runs as its own user, in a folder of its own"
install -m 640 -g vantle-service /usr/share/doc/vantle-service/examples/vantle-service.conf /etc/
systemctl enable --now vantle-service
for _ in $(seq 50); do
  if say 'GET /health HTTP/1.0\r\n\r\n' 2>/dev/null | grep -q ' 200 '; then break; fi
  sleep 0.1
done
[ "$(stat -c %U:%a $data)" = vantle-service:700 ]
[ "$(stat -c %U "/proc/$(systemctl show -P MainPID vantle-service)")" = vantle-service ]

echo "== a credential that is made beside it uploads a file, whose link opens"
token=$($as_service vantle-service token add alice --config /etc/vantle-service.conf --data $data)
body='--b\r\nContent-Disposition: form-data; name="files"; filename="a.txt"\r\nContent-Type: text/plain\r\n\r\nhello\r\n--b--\r\n'
length=$(printf '%b' "$body" | wc -c)
head="POST /v1/upload HTTP/1.0\r\nHost: 127.0.0.1:8787\r\nAuthorization: Bearer $token\r\n"
answer=$(say "${head}Content-Type: multipart/form-data; boundary=b\r\nContent-Length: $length\r\n\r\n$body")
link=$(sed -n 's|.*"url":"http://127.0.0.1:8787\([^"]*\)".*|\1|p' <<<"$answer")
say "GET $link HTTP/1.0\r\n\r\n" | grep -x hello

echo "== upgraded, it runs on; stopped, it ends well"
before=$(systemctl show -P MainPID vantle-service)
dpkg -i /vantle/vantle-service_*.deb
[ "$(systemctl is-active vantle-service)" = active ]
[ "$(systemctl show -P MainPID vantle-service)" != "$before" ]
systemctl stop vantle-service
[ "$(systemctl show -P Result vantle-service)" = success ]

echo "== purged, nothing of it is left"
systemctl start vantle-service
dpkg --purge vantle-service
[ "$(systemctl is-active vantle-service || true)" = inactive ]
[ ! -e $data ] && [ ! -e /etc/vantle-service.conf ]
[ ! -e /etc/systemd/system/multi-user.target.wants/vantle-service.service ]
[ -z "$(getent passwd vantle-service || true)" ]

echo passed
systemctl --no-block poweroff 2>/dev/null
