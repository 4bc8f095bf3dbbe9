# What differs from run to run on a screen, and what stands for it there.
s/\b[bcdlmnprst][aeio][bcdlmnprst][aeio][bcdlmnprst][1-9]\b/PASSWORD/g
s/\b(Mon|Tue|Wed|Thu|Fri|Sat|Sun), [ 0-3]?[0-9] [A-Z][a-z]{2} [0-9]{4} [0-9:]{8} [+-][0-9]{4}/DATE/g
# The server program's line: the screen is not to depend on when it comes (lib.sh, make_site).
/^tern\.harbor: ready\.$/d
# When Undo took a run back.
s/taken back [0-9]{4}-[0-9]{2}-[0-9]{2} [0-9:]{8}/taken back TIME/
