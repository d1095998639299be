# Puts the lists of commands and options into the manual page: PAGE with LISTS becomes OUTPUT.
file(READ ${PAGE} page)
file(READ ${LISTS} lists)
string(STRIP "${lists}" lists)
string(REPLACE "@CORVELLA_OPTIONS@" "${lists}" page "${page}")
file(WRITE ${OUTPUT} "${page}")
