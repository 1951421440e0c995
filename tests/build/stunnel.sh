# Sourced by scripts that talk to a simulated appliance through a TLS gateway.

# start_stunnel PORT: makes a CA and a certificate for localhost, and runs stunnel in front of that port of 127.0.0.1;
# sets stunnel_port and stunnel_folder. The simulator is stopped with it.
start_stunnel() {
    stunnel_folder=$(mktemp -d)
    trap 'stop_stunnel; stop_simulator' EXIT
    local key=(-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2)
    (
        cd "$stunnel_folder" || exit
        openssl req -x509 "${key[@]}" -subj "/CN=Test CA" -keyout ca.key -out ca.pem
        openssl req -x509 "${key[@]}" -CA ca.pem -CAkey ca.key -subj "/CN=gateway" \
            -addext "subjectAltName=DNS:localhost" -addext "basicConstraints=CA:FALSE" -keyout gateway.key -out gateway.pem
    ) 2>"$stunnel_folder/openssl.log"
    cat >"$stunnel_folder/stunnel.conf" <<EOF
foreground = yes
pid =
debug = info
[appliance]
accept = 127.0.0.1:0
connect = 127.0.0.1:$1
cert = $stunnel_folder/gateway.pem
key = $stunnel_folder/gateway.key
EOF
    stunnel4 "$stunnel_folder/stunnel.conf" >"$stunnel_folder/log" 2>&1 </dev/null &
    stunnel_pid=$!
    await_port stunnel "$stunnel_pid" "$stunnel_folder/log" 's/^.* bound to 127\.0\.0\.1:\([0-9]*\)$/\1/p' || return 1
    stunnel_port=$port
}

stop_stunnel() {
    kill "$stunnel_pid" 2>/dev/null || true
    wait "$stunnel_pid" 2>/dev/null || true
    rm -rf "$stunnel_folder"
}
