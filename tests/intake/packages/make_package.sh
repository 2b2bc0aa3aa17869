#!/bin/bash
# Makes one level package as it is published, with the system's own zip tools: make_package.sh FOLDER NAME
# The package is FOLDER/NAME.zip (a folder for some); what is in it stands in package_matrix_test.cpp.
set -eu
out=$1
name=$2
zip=$out/$name.zip
work=$(mktemp -d "$out/work.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"

put() { # PATH [TEXT]
    mkdir -p "$(dirname -- "$1")"
    printf '%s' "${2-content of $(basename -- "$1")}" >"$1"
}
level() { # FOLDER/ BASE: a level with its script and words
    put "$1$2.tr4"
    put "$1script.dat"
    put "$1english.dat"
}
pack() { # options of zip
    zip -q -r "$@" "$zip" .
}
blanks() { # WIDTH TEXT: a text field
    printf "%-${1}s" "$2"
}
config() { # NAME SIZE-OF-MAZE
    blanks 256 "$1"
    blanks 256 'Choose the maze'
    blanks 80 'Ada Example'
    blanks 256 'Hello'
    blanks 256 'ada@example.com'
    blanks 256 'http://example.com'
    blanks 7256 ''
    blanks 80 'story.txt'
    blanks 10 ''
    printf '\001\000\000\000\010\000maze.tr4'
    printf "\\x$(printf %02x "$2")\\000\\000\\000\\000\\000"
}

case $name in
flat) level '' maze; put readme.txt; pack ;;
one_top_folder) level 'The Maze/' maze; put 'The Maze/readme.txt'; pack ;;
data_and_audio_folders)
    put DATA/maze.tr4; put DATA/uklogo.pak; put AUDIO/105.wav; put AUDIO/008.wav; put script.dat
    put english.dat; put load.bmp; pack ;;
upper_case_names) put MAZE.TR4; put SCRIPT.DAT; put ENGLISH.DAT; put README.TXT; put 105.WAV; pack ;;
nested_zip)
    mkdir inner; (cd inner; put maze.tr4; put script.dat; put english.dat; zip -q ../level.zip -- *); rm -r inner
    put readme.txt; pack ;;
nested_twice)
    mkdir a; (cd a; put maze.tr4; put script.dat; put english.dat; zip -q ../a.zip -- *); rm -r a
    zip -q -m b.zip a.zip; put 'music.wav'; pack ;;
two_languages) level '' maze; put french.dat; pack ;;
two_foreign_languages) put maze.tr4; put script.dat; put french.dat; put german.dat; pack ;;
readme_names_standard) put mylevel.tr4; put 'read me.txt' 'Rename it to City.TR4, keep a copy.'; pack ;;
no_script_number) put mylevel.tr4; pack ;;
no_script_refused) put mylevel.tr4; pack ;;
standard_name) put karnak.tr4; put readme.txt; pack ;;
several_levels) level '' one; put two.tr4; put three.tr4; put title.tr4; pack ;;
several_without_script) put one.tr4; put two.tr4; pack ;;
documents) level '' maze; put manual.doc; put walkthrough.htm; put hints.rtf; put story.html; pack ;;
names_utf8) level '' maze; put 'Größe é.txt'; put 'Łódź.txt'; pack ;;
names_cp437)
    level '' maze; put "$(printf 'Gr\224\341e.txt')"; LC_ALL=C zip -q -r "$zip" . ;;
names_cp1252)
    level '' maze; put "$(printf 'Stra\337e \374ber.txt')"; LC_ALL=C zip -q -r "$zip" . ;;
names_with_signs)
    level '' maze; put "The author's  notes (v1.2) & more - final!.txt"; put '105 - Theme [loud].wav'; pack ;;
long_name) level '' maze; put "$(printf 'x%.0s' {1..200}).txt"; pack ;;
empty_files) level '' maze; put empty.wav ''; put empty.txt ''; pack ;;
level_of_700_mb) level '' maze; truncate -s 734003200 intro.pak; pack -1 ;;
savegames) level '' maze; put savegame.0; put savegame.12; put SAVEGAMES/savegame.3; pack ;;
pictures) level '' maze; put shot1.jpg; put PIX/map.bmp; put load.bmp; pack ;;
package_file) level '' maze; put story.txt; config 'By its author' 19 >kelvash.cfg; pack ;;
package_file_of_other_sizes) level '' maze; put story.txt; config 'By its author' 20 >kelvash.cfg; pack ;;
package_file_cut_short) level '' maze; config 'By its author' 19 | head -c 5000 >kelvash.cfg; pack ;;
sources_only) for e in tom wad swd was sam sfx; do put "maze.$e"; done; put script.dat; pack ;;
no_level) put readme.txt; put 105.wav; pack ;;
installer) put setup.exe; put readme.txt; pack ;;
encrypted) level '' maze; pack -P secret ;;
encrypted_wrong) level '' maze; pack -P secret ;;
truncated) level '' maze; head -c 20000 /dev/urandom >005.wav; pack; truncate -s 9000 "$zip" ;;
damaged)
    level '' maze; head -c 20000 /dev/zero >005.wav; pack -0
    printf 'XXXX' | dd of="$zip" bs=1 seek=10000 conv=notrunc status=none ;;
backslashes) put 'DATA\maze.tr4'; put 'DATA\script.dat'; put 'english.dat'; pack ;;
stored) level '' maze; put readme.txt; pack -0 ;;
packed_with_bzip2) level '' maze; head -c 100000 /dev/zero >005.wav; pack -Z bzip2 ;;
zip64) level '' maze; pack -fz ;;
self_extracting) level '' maze; pack; printf 'MZ a stub in front' | cat - "$zip" >sfx; mv sfx "$zip"
    zip -q -A "$zip" ;;
with_comment) level '' maze; pack; printf 'A comment\nof two lines' | zip -q -z "$zip" ;;
music_as_mp3)
    level '' maze; sox -n -r 44100 -c 2 -b 16 tone.wav synth 1 sine 440; lame --quiet tone.wav 105.mp3; rm tone.wav
    pack ;;
music_that_is_none) level '' maze; put 105.mp3; pack ;;
engine_folder)
    put 'Play.exe'; put README.txt; level 'Engine/' x; mv Engine/x.tr4 Engine/maze.tr4; mkdir Engine/data
    mv Engine/maze.tr4 Engine/data; put Engine/data/title.tr4; put Engine/audio/105.wav; put Engine/tomb4.exe
    put Engine/load.bmp; put Engine/splash.bmp; pack ;;
same_names_in_folders) level '' maze; put readme.txt 'the first'; put doc/readme.txt 'the second'; pack ;;
nameless_level) put '.tr4'; put script.dat; put english.dat; pack ;;
climbing) level '' maze; pack; put ../evil.txt; zip -q "$zip" ../evil.txt; rm ../evil.txt ;;
a_folder) zip=; mkdir "$out/a_folder"; cd "$out/a_folder"; level '' maze; put AUDIO/105.wav ;;
a_level_file) zip=; cd "$out"; put a_level_file.tr4 ;;
*) echo "no such package: $name" >&2; exit 2 ;;
esac
