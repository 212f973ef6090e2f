# From the samples of all programs, slurped, to what is shown and kept. $rows says what is wanted.

def sorted_quantile(q): ((length - 1) * q) as $at | ($at | floor) as $low
    | .[$low] + ($at - $low) * ((.[$low + 1] // .[$low]) - .[$low]);
def spread: sort | {median: sorted_quantile(0.5), low: sorted_quantile(0.25),
                    high: sorted_quantile(0.75), samples: length};

# The slope of the line through the logarithms: 1 is linear.
def exponent: length as $n | map([(.size | log), (.us | log)])
    | ((map(.[0]) | add) / $n) as $x | ((map(.[1]) | add) / $n) as $y
    | (map((.[0] - $x) * (.[1] - $y)) | add) / (map((.[0] - $x) * (.[0] - $x)) | add);

def size_of: capture("^InstantFill/(?<n>[0-9]+)/").n | tonumber;

map(.benchmarks[]) | map(select(.run_type == "iteration"))
| [group_by(.repetition_index // 0)[]
    | map(select(.name | startswith("InstantFill/")) | {size: (.name | size_of), us: .subject_us})
    | select(length > 1) | {name: "InstantFillExponent", ratio: exponent}] as $exponents
| . + $exponents
| . as $samples
| {
    rows: [$rows[] | . as $row
        | [$samples[] | select(.name | . == $row.sample or startswith($row.sample + "/"))] as $own
        | if ($own | length) == 0 then error("there is no sample of " + $row.sample) else . end
        | ($own | map(.ratio) | spread) as $ratio
        | {
            what, floor,
            ratio: $ratio,
            figure: (if .figure then .figure.of as $of
                | ($own | map(.[$of]) | spread) + {unit: .figure.unit} else null end),
            bar: (if .exactly then {kind: "exactly", is: .exactly}
                elif .most then {kind: "at most", is: .most} else null end),
            met: (if .exactly then all($own[]; .ratio == $row.exactly)
                elif .most then $ratio.median <= .most else null end)
        }],
    growth: [$samples | group_by(.name)[] | select(.[0].item_us != null) | {
        name: (.[0].name | sub("/iterations.*"; "")),
        item_us: (map(.item_us) | spread | .median),
        item_allocations: .[0].item_allocations}]
}
