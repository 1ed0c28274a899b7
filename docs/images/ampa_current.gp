# The picture of README.md, from the output of ./run:  gnuplot docs/images/ampa_current.gp
# Reads out/trace.csv (time in ms, current in pA).
set terminal svg size 900,340 font "Helvetica,13" background rgb "white"
set output "docs/images/ampa_current.svg"
set datafile separator ","
set multiplot

# -- Scheme --
set origin 0.0, 0.0
set size 0.45, 1.0
unset border; unset tics; unset key
set xrange [-0.35:3.35]; set yrange [-0.55:1.45]
set title "AMPA receptor, Jonas, Major and Sakmann (1993)" offset 0, -0.5
array sx[7] = [0, 1, 2, 3, 1, 2, 3]
array sy[7] = [1, 1, 1, 1, 0, 0, 0]
array name[7] = ["C0", "C1", "C2", "O", "C3", "C4", "C5"]
do for [i = 1:7] {
  set object i circle at sx[i], sy[i] size 0.2 front fillstyle solid 1.0 border rgb "#333333" \
    fillcolor rgb (i == 4 ? "#f4c95d" : "#e8eef4")
  set label i name[i] at sx[i], sy[i] center front
}
set style arrow 1 heads filled size 0.09, 22 linewidth 1.3 linecolor rgb "#2e8b57"  # binds glutamate
set style arrow 2 heads filled size 0.09, 22 linewidth 1.3 linecolor rgb "#333333"
set arrow 1 from 0.23, 1 to 0.77, 1 arrowstyle 1
set arrow 2 from 1.23, 1 to 1.77, 1 arrowstyle 1
set arrow 3 from 2.23, 1 to 2.77, 1 arrowstyle 2
set arrow 4 from 1, 0.82 to 1, 0.18 arrowstyle 2
set arrow 5 from 2, 0.82 to 2, 0.18 arrowstyle 2
set arrow 6 from 3, 0.82 to 3, 0.18 arrowstyle 2
set arrow 7 from 1.23, 0 to 1.77, 0 arrowstyle 1
set arrow 8 from 2.23, 0 to 2.77, 0 arrowstyle 2
set label 11 "green: glutamate binds" at 1.5, -0.42 center textcolor rgb "#2e8b57"
plot NaN
unset object; unset label; unset arrow; unset title

# -- Stimulus and current --
set border 3; set xtics nomirror; set ytics nomirror
set lmargin at screen 0.55; set rmargin at screen 0.97
set xrange [0:40]
set tmargin at screen 0.95; set bmargin at screen 0.83
set yrange [0:1.15]
unset border; unset xtics; unset ytics
set label 1 "1 mM glutamate, 1 ms" at 7, 0.6
$pulse << END
0,0
5,0
5,1
6,1
6,0
40,0
END
plot $pulse using 1:2 with lines linewidth 2 linecolor rgb "#2e8b57" notitle
unset label
set border 3; set xtics nomirror 10; set ytics nomirror 10
set tmargin at screen 0.78; set bmargin at screen 0.17
set yrange [-45:3]
set xlabel "Time (ms)"
set ylabel "Macroscopic current (pA)"
plot "out/trace.csv" using 1:2 every 50 with lines linewidth 2 linecolor rgb "#000080" notitle
unset multiplot
