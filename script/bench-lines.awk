# Turns the console table of Google Benchmark into lines "name value unit": the time of each benchmark, and each of its
# counters as name:counter.
/ERROR OCCURRED/ { print; failed = 1; next }
NF >= 4 && $2 ~ /^[0-9.]+$/ {
    print $1, $2, $3
    for (i = 7; i <= NF; i++) {
        if (split($i, part, "=") == 2) {
            value = part[2]
            unit = ""
            if (match(value, /[^0-9.e+-]+.*$/)) {
                unit = substr(value, RSTART)
                value = substr(value, 1, RSTART - 1)
            }
            print $1 ":" part[1], value, unit
        }
    }
}
END { exit failed }
