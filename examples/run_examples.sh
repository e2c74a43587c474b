#!/usr/bin/env bash
# Goes through the examples with the built program and shows what each one says.
#
#   examples/run_examples.sh            results go to build/examples
#   examples/run_examples.sh FOLDER     results go to FOLDER
#
# VOREX names the program; without it, the release build is used. Ends with 0 when every example ended with
# the exit code given here: some fail on purpose.
set -euo pipefail
export LC_ALL=C.UTF-8 # this script and the lines that it expects are in English
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
vorex=$(realpath "${VOREX:-$here/../build/release/bin/vorex}")
out=${1:-$here/../build/examples}

if [ ! -x "$vorex" ]; then
    echo "run_examples: there is no program $vorex; build it with ./run, or name it in VOREX" >&2
    exit 2
fi
mkdir -p "$out"
out=$(realpath "$out")
rm -f "$out"/*.journal # from an earlier run of the examples that was interrupted
cd "$here"
shown_out=$(realpath --relative-to=. --relative-base=.. "$out") # absolute outside the project

bold='' plain=''
if [ -t 1 ]; then bold=$'\e[1m' plain=$'\e[0m'; fi
count=0
wrong=()

# example WHAT EXPECTED_EXIT_CODE ELEMENT_FILE RECORDING [OPERATOR_SCRIPT]
example() {
    local what=$1 expected=$2 name=$3 recording=$4 script=${5:-}
    perform "$what" "$expected" "$name" "$script" --instruments "recording:$recording.jsonl"
}

# room WHAT EXPECTED_EXIT_CODE ELEMENT_FILE ROOM
room() {
    perform "$1" "$2" "$3" '' --instruments simulated --room "rooms/$4.json"
}

# unit_survey WHAT EXPECTED_EXIT_CODE ANSWERS ROOM EXPECTED_LINE...: the survey is filled from its answers, then performed
# after the tests that feed it; show must print the lines, whatever the width of its columns and lines.
unit_survey() {
    local what=$1 expected=$2 answers=$3 room=$4 code=0 report line shown
    count=$((count + 1))
    result=$(printf '%02d_%s.xml' "$count" "$answers")
    report=${result%.xml}.pdf
    printf '\n%s%2d  %s%s\n' "$bold" "$count" "$what" "$plain"
    printf '    $ vorex survey mammography_survey.xml --from %s.json -o %s/filled.xml\n' "$answers" "$shown_out"
    # This exit code reflects the answers only; the one that counts is that of the run.
    "$vorex" survey mammography_survey.xml --from "$answers.json" -o "$out/filled.xml" >/dev/null || true
    printf '    $ vorex run %s/filled.xml --instruments simulated --room rooms/%s.json \\\n' "$shown_out" "$room"
    printf '          -o %s/%s --report %s/%s\n' "$shown_out" "$result" "$shown_out" "$report"
    "$vorex" run "$out/filled.xml" --instruments simulated --room "rooms/$room.json" \
        -o "$out/$result" --report "$out/$report" >"$out/printed.txt" 2>&1 || code=$?
    sed '/^Saved as /d; s/^/    /; s/   *\([A-Za-z][A-Za-z ]*\)$/  ->  \1/' "$out/printed.txt"
    rm -f "$out/printed.txt" "$out/filled.xml"
    shown=$("$vorex" show "$out/$result" | tr -s '[:space:]' ' ')
    for line in "${@:5}"; do
        grep -qF -- "$line" <<<"$shown" && continue
        printf '    show does not say: %s\n' "$line"
        code="$code, and something is missing"
    done
    printf '    the printed survey: %s/%s\n' "$shown_out" "$report"
    conclude "$expected" "$code"
}

# conclude EXPECTED_EXIT_CODE EXIT_CODE
conclude() {
    if [ "$2" = "$1" ]; then
        printf '    exit code %s, as expected\n' "$2"
    else
        printf '    exit code %s, but %d was expected\n' "$2" "$1"
        wrong+=("$count")
    fi
}

# perform WHAT EXPECTED_EXIT_CODE ELEMENT_FILE OPERATOR_SCRIPT INSTRUMENTS...
perform() {
    local what=$1 expected=$2 name=$3 script=$4 code=0
    local arguments=(run "$name.xml" "${@:5}")
    count=$((count + 1))
    result=$(printf '%02d_%s.xml' "$count" "$name")
    printf '\n%s%2d  %s%s\n' "$bold" "$count" "$what" "$plain"
    printf '    $ vorex %s \\\n          ' "${arguments[*]}"
    if [ -n "$script" ]; then
        arguments+=(--operator "$script")
        printf "%s '%s' " --operator "$script"
    fi
    printf -- '-o %s/%s\n' "$shown_out" "$result"
    # A person at a terminal sees the progress of the run.
    if [ -t 2 ]; then
        "$vorex" "${arguments[@]}" -o "$out/$result" >"$out/printed.txt" || code=$?
    else
        "$vorex" "${arguments[@]}" -o "$out/$result" >"$out/printed.txt" 2>&1 || code=$?
    fi
    sed '/^Saved as /d; s/^/    /; s/   *\([A-Za-z][A-Za-z ]*\)$/  ->  \1/' "$out/printed.txt"
    rm "$out/printed.txt"
    conclude "$expected" "$code"
}

echo "Each example is an element file (.xml: what is tested, and its limits), with a simulated X-ray room or a"
echo "recording (.jsonl: what the instruments answered). The commands are as given in examples/, with the program's"
echo "folder on the PATH."

room "A radiographic unit in a simulated room" 0 radiographic_unit good
radiographic=$result
room "A fluoroscopic unit" 0 fluoroscopic_unit good
room "A mammographic unit" 0 mammographic_unit good
room "The same radiographic unit with 8 % too much voltage" 1 radiographic_unit kvp_high
room "The timer drifts" 1 radiographic_unit drifting_timer
room "An mA station is not linear" 1 radiographic_unit nonlinear_ma
room "The beam is too soft" 1 radiographic_unit soft_beam
room "The exposure control of the mammographic unit is unstable" 1 mammographic_unit unstable_aec
room "Its tube is weak" 1 mammographic_unit weak_mammography_tube
room "The link is lost after the second exposure: what was measured is saved" 4 fluoroscopic_unit flaky_link

unit_survey "The annual survey of a mammography unit: everything passes" 0 survey_passing steady_mammography \
    'Sum as % of SID, column 1 0.77%' 'Mean Optical Density (2-6 cm), row 9, column 1 1.58' \
    'Overall AEC Performance, Mean Optical Density, row 10, column 1 1.57' \
    'Standard deviation of control cassette densities, Density, column 3 0.01' \
    '% mAs change = mAs change/mAsx100, Current Film, column 2 -2.12%' \
    '9. Beam Quality (Half-Value Layer) Assessment NA NA' \
    'Radiation output rate is > 800 mR/sec (ACR): 513 mR/sec (MQSA) mR/sec Pass Pass'
unit_survey "The survey of another one: a worn anode fails output, focal spot and exposure control" 1 \
    survey_failing worn_mammography_tube \
    'Sum as % of SID, column 1 2.31%' 'Mean Optical Density (2-6 cm), row 9, column 1 1.43' \
    'Overall AEC Performance, Mean Optical Density, row 10, column 1 1.34' \
    '3. Evaluation of Focal Spot Performance Fail Fail' \
    '4. Automatic Exposure Control (AEC) System Performance Pass Fail' \
    '4 largest fibers, 3 largest speck groups and 3 largest masses are visible Fail Fail' \
    'Radiation output rate is > 800 mR/sec (ACR): 513 mR/sec (MQSA) mR/sec Fail Fail' \
    'ThicknesskVpTracking(7,7): optical density of the film: 0.94, expected at least 1.2 OD'
failing_survey=$result

example "Reproducibility, ZRD 47500 and mAs meter: the detector has slipped at exposure 5" 1 \
    radio_reproducibility radio_reproducibility
example "The same, and the operator takes exposure 5 again" 0 \
    radio_reproducibility radio_reproducibility 'start,redo 5,next'
example "Voltage and time against what is set: 6.58 % off at 120 kV" 1 radio_accuracy radio_accuracy
example "Linearity, from an instrument that writes a decimal comma" 0 radio_linearity radio_linearity
example "The mAs meter alone, with a waveform of the tube current" 0 mas_meter mas_meter
example "The Pelomark dosimeter at a dental unit" 0 dosimeter dosimeter
example "The Pelomark and the mAs meter: dose per mAs" 0 dosimeter_mas dosimeter_mas
example "Fluoroscopy voltage, continuous, in R" 0 fluoro_accuracy fluoro_accuracy
example "Fluoroscopy dose rate, pulsed, in Gy, a limit for each exposure" 0 fluoro_exposure fluoro_exposure
example "Mammography voltage: the detector is over range at exposure 5" 1 mammo_accuracy mammo_accuracy
example "The same, and the operator takes exposure 5 again" 0 mammo_accuracy mammo_accuracy 'start,redo 5,next'
example "Mammography AEC and average glandular dose" 0 mammo_aec mammo_aec
aec=$result
example "Mammography output, and the link is lost after the first exposure" 4 mammo_output mammo_output_link_lost
example "The same without the fault" 0 mammo_output mammo_output
example "A whole unit: groups in a group; one exposure again, one test not applicable" 0 \
    unit unit ';start,redo 2,next;;;na'
example "The same, and the operator aborts at the second test" 3 unit unit 'start,next;abort'

# look WHAT FILE: the judged tree of a result
look() {
    printf '\n%s%s%s\n    $ vorex show %s/%s\n' "$bold" "$1" "$plain" "$shown_out" "$2"
    "$vorex" show "$shown_out/$2" | sed 's/^\(.\)/    \1/'
}
look "What the radiographic unit was found to do" "$radiographic"
printf '\n%sIts element file%s\n    $ grep -m 1 -A 12 "<ResultItem MTI" %s/%s\n' "$bold" "$plain" "$shown_out" "$radiographic"
grep -m 1 -A 12 '<ResultItem MTI' "$out/$radiographic" | sed 's/^/    /'
look "What a dose looks like" "$aec"
printf '\n%sWhy the second survey fails%s\n    $ vorex show %s/%s\n    ...\n' "$bold" "$plain" "$shown_out" "$failing_survey"
"$vorex" show "$shown_out/$failing_survey" | sed -n '/What fails or is missing/,$s/^/    /p'

if [ ${#wrong[@]} -gt 0 ]; then
    echo "${#wrong[@]} of $count examples did not end as expected: ${wrong[*]}"
    exit 1
fi
echo "All $count examples ended as expected."
