#!/usr/bin/env bash
# mixed_folder.sh DIR: fills DIR with 60 items of every kind that a desktop holds: documents, pictures, archives,
# programs, shortcuts, folders; every age; long names and names in several scripts; one file marked as downloaded.
set -euo pipefail
# shellcheck source=tools/wine_prefix.sh
. "$(dirname "${BASH_SOURCE[0]}")/wine_prefix.sh"
[[ $# -eq 1 ]] || { echo "usage: mixed_folder.sh DIR" >&2; exit 2; }
mkdir -p "$1"
# shellcheck disable=SC2034  # read by desktop_items.sh
items_folder=$(cd "$1" && pwd)
items_prefix=$(wine_new_prefix items)
trap 'wine_remove "$items_prefix"' EXIT
# shellcheck source=tools/desktop_items.sh
. "$varnelo_root/tools/desktop_items.sh"

# Families of names.
for number in 0001 0002 0003 0004 0005 0006 0007 0008; do picture "IMG_$number.jpg" 12; done
text 'Annual report 2023.docx' 720
text 'Annual report 2024.docx' 360
text 'Annual report 2025 final.pdf' 10
text 'annual_report_2025_draft.docx' 15
text 'InvoiceTemplate_v1.xlsx' 90
text 'InvoiceTemplate_v2.xlsx' 60
text 'Song of the sea (take 1).mp3' 33
text 'Song of the sea (take 2).mp3' 33
text 'Song of the sea (take 3).mp3' 32

# Programs and shortcuts.
executable 'Portable Game.exe' 200
executable 'setup_x64.exe' 1
link 'Text Editor.lnk' 'C:\windows\system32\notepad.exe'
link 'Task Manager.lnk' 'C:\windows\system32\taskmgr.exe'
link 'Help Viewer.lnk' 'C:\windows\hh.exe'
link 'Windows folder.lnk' 'C:\windows'
web 'Example.url' 4 'https://www.example.org/'
web 'Race Game.url' 9 'steam://rungameid/12345'
make_links

# Names.
text 'Übergrößenträger.txt' 2
text 'Straße nach Çeşme.rtf' 20
text '東京の地図.png' 6
text '請求書_2025年.pdf' 45
text 'Party 🎉 plan.txt' 1
text 'Смета ремонта.xlsx' 27
text "$(printf 'A very long file name that goes on and on %.0s' 1 2 3 4 | cut -c1-196).txt" 3
text 'noextension' 5
text '.hidden notes' 8
text 'two.dots.in.name.md' 13
text 'UPPERCASE.TXT' 11
text 'ends with blanks  x.log' 50

# Archives, one of them downloaded.
archive 'Photos backup.zip' 3
archive 'sources.tar.gz' 100
archive 'old stuff.7z' 900
archive 'Downloaded.zip' 1
stream 'Downloaded.zip'

# Folders.
folder 'Projects' 0 'readme.txt'
folder 'Müll' 22
folder 'Archive 2019' 2000 'list.csv'
folder 'Empty' 65

# Ages on both sides of every limit, and the odd ones.
text 'seven days.csv' 7
text 'eight days.json' 8
text 'thirty days.html' 30
text 'thirtyone days.py' 31
text 'ninety days.bmp' 90
text 'ninetyone days.wav' 91
text 'tomorrow.ini' -1
text 'from 1969.txt' 0
touch -d '1969-07-20 20:17:00 UTC' "$items_folder/from 1969.txt"
text 'Film.mkv' 180
text 'Disc.iso' 365
text 'Letter to the bank.odt' 5
text 'Zeugnis.pdf' 1500
text 'Notes.rtf' 17
text 'Presentation.pptx' 29
echo "mixed folder: $(find "$items_folder" -mindepth 1 -maxdepth 1 | wc -l) items in $items_folder"
