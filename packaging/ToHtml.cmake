# SPDX-License-Identifier: MIT
# Makes an HTML page of a Markdown page. Links to the other installed pages follow.
#   cmake -DCMARK=cmark-gfm -DPAGE=docs/a.md -DPAGES=a;b -DHTML=a.html -P ToHtml.cmake
execute_process(COMMAND ${CMARK} --unsafe --extension table --extension autolink ${PAGE}
    OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)
file(STRINGS ${PAGE} title REGEX "^# " LIMIT_COUNT 1)
string(REGEX REPLACE "^# " "" title "${title}")
# cmark-gfm gives headings no names.
string(REGEX MATCHALL "<h[1-6]>[^\n;]*</h[1-6]>" headings "${body}")
foreach(heading IN LISTS headings)
    string(REGEX REPLACE "<[^>]*>" "" name "${heading}")
    string(TOLOWER "${name}" name)
    string(REGEX REPLACE "[^a-z0-9 _-]" "" name "${name}")
    string(REPLACE " " "-" name "${name}")
    string(REGEX REPLACE "^<(h[1-6])>" "<\\1 id=\"${name}\">" named "${heading}")
    string(REPLACE "${heading}" "${named}" body "${body}")
endforeach()
foreach(page IN LISTS PAGES)
    string(REGEX REPLACE "href=\"${page}\\.md" "href=\"${page}.html" body "${body}")
endforeach()
# A page that is not installed is named, but not linked.
string(REGEX REPLACE "<a href=\"[^\":]*\\.md[^\"]*\">([^<]*)</a>" "\\1" body "${body}")
file(WRITE ${HTML} "<!DOCTYPE html>
<html lang=\"en\">
<head>
<meta charset=\"utf-8\">
<title>${title}</title>
<style>
:root { color-scheme: light dark }
body { max-width: 50em; margin: 2em auto; padding: 0 1em; font-family: sans-serif }
img { max-width: 100% }
table { border-collapse: collapse }
td, th { border: 1px solid gray; padding: 0.2em 0.5em; text-align: left; vertical-align: top }
</style>
</head>
<body>
${body}</body>
</html>
")
