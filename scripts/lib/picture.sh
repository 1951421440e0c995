# picture.sh TOOL SIMULATOR: prints the picture of the tool at work, an SVG for light and dark screens, from what the
# tool prints about a simulated appliance.
set -euo pipefail
. "$(dirname "$0")/simulator.sh"
tool=$1
start_simulator "$2" --quiet
place=$(mktemp -d)
finish() {
    stop_simulator
    rm -rf "$place"
}
trap finish EXIT
printf '[lab1]\nhost = "127.0.0.1:%s"\nuser = "engineer"\n' "$simulator_port" >"$place/config.toml"

tavo() {
    env -i TAVO_CONFIG="$place/config.toml" TAVO_PASSWORD=tavo XDG_RUNTIME_DIR="$place" LC_ALL=C.UTF-8 TERM=dumb "$tool" "$@"
}

# show LINE: the prompt, the command line and what it prints, but for the port, which differs every time.
show() {
    printf '$ %s\n' "$1"
    eval "$1" | sed "s/:$simulator_port\$/:6123/"
}

await_boot() {
    local waited=0
    until tavo --host lab1 post list | grep -q ' AA '; do
        if [ "$waited" -ge 100 ]; then
            echo "The board does not boot" >&2
            exit 1
        fi
        sleep 0.3
        waited=$((waited + 1))
    done
}

show 'tavo --host lab1 tree' >"$place/left"
{
    show 'tavo --host lab1 relay set power on'
    # Following the boot would show it in other pieces every time.
    await_boot
    show 'tavo --host lab1 post list | tail -n 14'
    show 'tavo --host lab1 jtag scan --object cpu0.jtag'
} >"$place/right"

# Pixels: of a line, of a character, around the text, and where the right column begins.
line=18 character=7.8 margin=24 right=470
lines=$(wc -l "$place/left" "$place/right" | awk '$1 > n && $2 != "total" { n = $1 } END { print n }')
height=$((2 * margin + lines * line))
width=$((2 * margin + right + 460))

# column X: the lines of standard input as texts.
column() {
    # The characters of the tree as entities: the file is ASCII.
    sed -e 's/&/\&amp;/g' -e 's/</\&lt;/g' -e 's/>/\&gt;/g' \
        -e $'s/\xe2\x94\x80/\\&#x2500;/g' -e $'s/\xe2\x94\x82/\\&#x2502;/g' \
        -e $'s/\xe2\x94\x9c/\\&#x251c;/g' -e $'s/\xe2\x94\x94/\\&#x2514;/g' |
        awk -v "x=$1" -v "line=$line" -v "margin=$margin" '
            {
                y = margin + NR * line - 5
                if (sub(/^\$ /, ""))
                    $0 = "<tspan class=\"prompt\">$ </tspan><tspan class=\"command\">" $0 "</tspan>"
                printf "<text x=\"%d\" y=\"%d\" xml:space=\"preserve\">%s</text>\n", x, y, $0
            }'
}

cat <<END_OF_HEAD
<svg xmlns="http://www.w3.org/2000/svg" width="$width" height="$height" viewBox="0 0 $width $height" role="img">
<title>The tool shows the objects of an appliance, the POST codes of a boot and a JTAG chain</title>
<style>
text { font: 13px ui-monospace, SFMono-Regular, Menlo, Consolas, "DejaVu Sans Mono", monospace; fill: #1f2328; }
.screen { fill: #f6f8fa; stroke: #d0d7de; }
.prompt { fill: #1a7f37; }
.command { font-weight: bold; }
@media (prefers-color-scheme: dark) {
text { fill: #e6edf3; }
.screen { fill: #0d1117; stroke: #30363d; }
.prompt { fill: #3fb950; }
}
</style>
<rect class="screen" x="0.5" y="0.5" width="$((width - 1))" height="$((height - 1))" rx="8"/>
END_OF_HEAD
column "$margin" <"$place/left"
column $((margin + right)) <"$place/right"
echo '</svg>'
