4ZV
AMPA receptor, hippocampal CA3 pyramidal cell, 22 C: Jonas, Major & Sakmann (1993) J Physiol 472:615; conductance (10 pS) and holding potential are not from the paper's scheme
[State1-20: onoff]
1 0 0 1
1 0 0 0
1 0 0 0
1 1 10 0
0 0 0 0
0 0 0 0
1 0 0 0
1 0 0 0
1 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
0 0 0 0
[Drug dependence labels]
Glutamate





[K1-31on]
4590000
28400000
4240
0
0
2890
172
17.7
0
0
1270000
16.8
0
0
0
0
0
0
0
0
0
0
0
0
0
0
0
0
0
