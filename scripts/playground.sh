# The playground: a program folder, a server folder and a MySQL folder to try kTools in. Sourced after lib.sh
# and platforms.sh, and used on the platform that platform_is has set.
# shellcheck shell=bash

# put_text TEMPLATE FILE [SED EXPRESSION]: as a Windows text file, unless the file is there already.
put_text() { [[ -e $2 ]] || sed -e "${3-}" -e 's/$/\r/' "$top/scripts/playground/$1" >"$2"; }

# lay_out FOLDER: makes or completes the playground. The programs are always those just built; everything
# that a user may have changed stays as it is.
lay_out() {
    local folder=$1 program map
    mkdir -p "$folder"/{kTools/kTools,Kerno/database,MySQL/bin,.servers/127.0.0.1}
    for program in kTools kLogin kCharacter kZone; do
        program=$(find "$top/build/$platform_preset" -name "$program.exe" -print -quit)
        [[ -n $program ]] || continue
        case $program in
        */kTools.exe) cp -u "$program" "$folder/kTools/" ;;
        *) cp -u "$program" "$folder/Kerno/" ;;
        esac
    done
    cp -rn "$top/data/kTools/." "$folder/kTools/kTools/"

    # New players start in the middle of the first map that the tool knows.
    IFS=, read -r -a map < <(tr -d '\r' <"$folder/kTools/kTools/databases/MapInfo.txt" 2>/dev/null) || true
    map=("${map[0]-start.map}" "${map[1]-100}" "${map[2]-100}")
    put_text Kerno.ini "$folder/Kerno/Kerno.ini" \
        "s/@MAP@/${map[0]%????}/;s/@MAP_X@/$((map[1] / 2))/;s/@MAP_Y@/$((map[2] / 2))/"
    put_text id_table.txt "$folder/Kerno/database/id_table.txt"
    put_text kTools.ini "$folder/kTools/kTools.ini"
    put_text mysqld.txt "$folder/MySQL/bin/mysqld.exe"
    [[ -L $folder/MySQL/data ]] || ln -s ../.servers/127.0.0.1/data "$folder/MySQL/data"
}

# set_look LOOK: how Windows shows its windows: in percent of the usual size, or in high contrast. Black, white and
# yellow, and no theme, are what Windows' own high contrast gives a program.
set_look() {
    local percent=100 theme=1
    local paper='255 255 255' ink='0 0 0' face='240 240 240' chosen='0 120 215'
    case $1 in
    contrast) theme=0 paper='0 0 0' ink='255 255 255' face='0 0 0' chosen='26 235 255' ;;
    *) percent=$1 ;;
    esac
    {
        printf 'REGEDIT4\n\n[HKEY_CURRENT_USER\\Control Panel\\Desktop]\n"LogPixels"=dword:%08x\n\n' $((percent * 96 / 100))
        printf '[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\ThemeManager]\n"ThemeActive"="%s"\n\n' "$theme"
        printf '[HKEY_CURRENT_USER\\Control Panel\\Colors]\n'
        printf '"%s"="%s"\n' Window "$paper" InfoWindow "$paper" Menu "$paper" ButtonFace "$face" MenuBar "$face" \
            Scrollbar "$face" ButtonAlternateFace "$face" WindowText "$ink" ButtonText "$ink" MenuText "$ink" \
            InfoText "$ink" WindowFrame "$ink" Hilight "$chosen" HilightText "$paper"
    } >"$logs/look.reg"
    unlocked wine regedit /S "$(windows_path "$logs/look.reg")" >/dev/null 2>&1
}

# start_playground FOLDER LOOK: Wine and the database server; the folders are C:\kTools, C:\Kerno and C:\MySQL.
start_playground() {
    local folder=$1 name
    start_wine "$folder/.wine" "$platform_bits"
    set_look "$2"
    for name in kTools Kerno MySQL; do
        [[ -e $WINEPREFIX/drive_c/$name ]] || ln -s "../../$name" "$WINEPREFIX/drive_c/$name"
    done
    # The server names its data folder without a drive, and kTools looks for it on the drive of the MySQL folder.
    mkdir -p "$WINEPREFIX/drive_c$folder"
    ln -sfn "$folder/.servers" "$WINEPREFIX/drive_c$folder/.servers"
    export KTOOLS_MARIADB=$folder/.servers KTOOLS_SERVERS="127.0.0.1=$platform_local"
    say "starting the database server"
    start_databases 127.0.0.1
    if [[ ! -e $folder/.servers/filled ]]; then
        { unlocked wine "$(find "$top/build/$platform_preset" -name schema.exe -print -quit)" &&
            cat "$top/scripts/playground/databases.sql"; } |
            mariadb --no-defaults -h 127.0.0.1 -P 3306 -u root ||
            fail "the databases could not be filled"
        touch "$folder/.servers/filled"
    fi
}
