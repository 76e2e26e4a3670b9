# Documentation pages for operators, whose Windows opens no Markdown. Sourced after lib.sh.
# shellcheck shell=bash

# make_page PAGE.md FOLDER: as a web page, with the pictures that it shows.
make_page() {
    local page=$1 folder=$2 title picture
    title=$(sed -n 's/^# *//p' "$page" | head -n 1 | sed 's/[`*]//g;s/&/\&amp;/g')
    {
        printf '<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n<title>%s</title>\n<style>\n' "$title"
        printf 'body { max-width: 50em; margin: 2em auto; padding: 0 1em; font: 16px/1.5 "Segoe UI", sans-serif; }\n'
        printf 'table { border-collapse: collapse; }\nth, td { border: 1px solid #bbb; padding: .2em .6em; text-align: left; vertical-align: top; }\n'
        printf 'img { max-width: 100%%; }\ncode, pre { background: #f2f2f2; }\npre { padding: .6em; overflow: auto; }\n'
        printf '</style>\n</head>\n<body>\n'
        cmark-gfm --extension table "$page" | add_anchors | sed 's/href="\([^":]*\)\.md\(["#]\)/href="\1.html\2/g' || return 1
        printf '</body>\n</html>\n'
    } >"$folder/$(basename "$page" .md).html"
    while read -r picture; do
        mkdir -p "$folder/$(dirname "$picture")"
        cp "$(dirname "$page")/$picture" "$folder/$picture" || return 1
    done < <(grep -o '!\[[^]]*\]([^):]*)' "$page" | sed 's/.*(\(.*\))/\1/' | LC_ALL=C sort -u)
}

# make_help PAGE.md FOLDER: a small page for each heading, help/NAME.html, which leads on to that heading. The
# program opens these: Windows drops what stands behind "#" when it opens a file.
make_help() {
    local page=$1 folder=$2 target name
    target=../$(basename "$page" .md).html
    mkdir -p "$folder/help" || return 1
    while read -r name; do
        printf '<!DOCTYPE html>\n<meta charset="utf-8">\n<title>Kerno Tools</title>\n<meta http-equiv="refresh" content="0; url=%s">\n<a href="%s">%s</a>\n' \
            "$target#$name" "$target#$name" "$name" >"$folder/help/$name.html" || return 1
    done < <(cmark-gfm --extension table "$page" | add_anchors | sed -n 's/^<h[2-6] id="\([^"]*\)".*/\1/p')
}

# Headings get the names by which a page's own links reach them: small letters, hyphens for blanks.
add_anchors() {
    perl -pe 's{^<h([1-6])>(.*)</h\1>$}{
        my ($level, $text) = ($1, $2);
        (my $name = lc $text) =~ s/<[^>]*>|&\w+;|[^\w\s-]//g;
        $name =~ s/\s/-/g;
        "<h$level id=\"$name\">$text</h$level>"
    }e'
}
