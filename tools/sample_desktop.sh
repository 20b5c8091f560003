#!/usr/bin/env bash
# sample_desktop.sh PREFIX: a small real desktop in the prefix, for a first look at the program on a fresh machine.
set -euo pipefail
# shellcheck source=tools/wine_prefix.sh
. "$(dirname "${BASH_SOURCE[0]}")/wine_prefix.sh"
# shellcheck disable=SC2034  # both are read by desktop_items.sh
items_prefix=$1 items_folder=$(wine_desktop_folder "$1")
# shellcheck source=tools/desktop_items.sh
. "$varnelo_root/tools/desktop_items.sh"
mkdir -p "$items_folder"

link 'Editor.lnk' 'C:\windows\system32\notepad.exe'
link 'Writer.lnk' 'C:\Program Files\Windows NT\Accessories\wordpad.exe'
link 'Web Browser.lnk' 'C:\Program Files\Internet Explorer\iexplore.exe'
link 'Minesweeper.lnk' 'C:\windows\system32\winemine.exe'
link 'Registry.lnk' 'C:\windows\regedit.exe'
link 'Console.lnk' 'C:\windows\system32\cmd.exe'
make_links

picture 'Lisbon 0412.jpg' 40
picture 'Lisbon 0413.jpg' 40
picture 'Lisbon 0417.jpg' 39
picture 'Lisbon 0420.jpg' 39
picture 'Lisbon 0433.jpg' 38
text 'Kitchen plan v1.pdf' 30
text 'Kitchen plan v2.pdf' 21
text 'Kitchen plan final.docx' 6
text 'Budget 2024.xlsx' 400
text 'Budget 2025.xlsx' 35
text 'Budget 2026.xlsx' 1

text 'Shopping list.txt' 0
text 'Grüße aus München.txt' 2
text '旅行の計画.txt' 3
text 'Talk.pptx' 5
text 'Rental agreement.pdf' 14
text 'Concert.mp3' 18
folder 'Recipes' 25 'Bread.txt'
text 'Birthday.mp4' 55
web 'Weather.url' 70 'https://www.example.org/weather'
text 'Thesis.docx' 500
folder 'Letters' 800 'Grandma.txt'
archive 'Holiday pictures.zip' 120
archive 'Fonts.7z' 12
echo "sample desktop: $(find "$items_folder" -mindepth 1 -maxdepth 1 | wc -l) items"
