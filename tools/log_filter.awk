# Turns Wine's debug output into the program's own log: each line once, in its order, without Wine's prefix.
# -v others=1 passes every other line through.
#
# Wine shows a debug string by two channels of the same class, one line after the other; the one of OutputDebugString is
# taken. Quotes, backslashes and line ends are escaped as in C.

/:warn:seh:OutputDebugString[AW] / {
    text = $0
    sub(/^[^"]*"/, "", text)
    sub(/"(\.\.\.)?[ \t\r]*$/, "", text)
    sub(/\\n$/, "", text)
    gsub(/\\\\/, "\001", text)
    gsub(/\\"/, "\"", text)
    gsub(/\001/, "\\", text)
    print text
    fflush()
    next
}
/:warn:seh:dispatch_exception "/ { next }
others { print; fflush() }
