# Draws `output` from the points in `folder`.
set terminal svg size 960,420 background "white" font "sans-serif,12"
set output output
set multiplot layout 1,2
set grid
set key top right
set logscale xy

set title "A call of 16 bytes each way, in batches"
set xlabel "calls in one exchange"
set ylabel "nanoseconds per call"
set format x "10^{%L}"
plot folder."/batches.dat" using 1:2 with linespoints title "raw sockets", \
     folder."/batches.dat" using 1:3 with linespoints title "library"

set title "Large blocks in one call"
set key bottom right
set xlabel "bytes"
set ylabel "MB/s"
set logscale x 2
set xtics ("1 KiB" 1024, "16 KiB" 16384, "256 KiB" 262144, "4 MiB" 4194304)
plot folder."/blobs.dat" using 1:2 with linespoints title "upload, raw sockets", \
     folder."/blobs.dat" using 1:3 with linespoints title "upload, library", \
     folder."/blobs.dat" using 1:4 with linespoints title "download, raw sockets", \
     folder."/blobs.dat" using 1:5 with linespoints title "download, library"
unset multiplot
