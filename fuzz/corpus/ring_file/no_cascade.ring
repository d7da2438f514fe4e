palm
0
config
key=value
log
nothing
