# The reference has pictures and examples beside its pages, and pages named after their paths. It
# does not find them by itself if the path of the sources has a space.
s#\]\((\.\./)?(docs|examples)/([^)]*/)?([^/)]*\.(svg|cpp|php))\)#](\4)#g
s#\]\((\.\./)?README\.md(\#[^)]*)?\)#](index.html)#g
s#\]\((\.\./)?([A-Z]+)\.md(\#[^)]*)?\)#](md_\2.html)#g
s#\]\((docs/)?([a-z]+)\.md(\#[^)]*)?\)#](md_docs_\2.html)#g
