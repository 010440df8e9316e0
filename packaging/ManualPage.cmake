# Makes a page of the installed manual from a Markdown document.
#   cmake -D converter=CMARK-GFM -D source=DOCUMENT.md -D page=DOCUMENT.html -P ManualPage.cmake
execute_process(COMMAND "${converter}" --extension table --to html "${source}"
    OUTPUT_VARIABLE body COMMAND_ERROR_IS_FATAL ANY)

# The other pages are installed beside this one; whatever else a relative link leads to is not installed.
string(REGEX REPLACE "href=\"(troubleshooting|keeping-disks-safe)\\.md" "href=\"./\\1.html" body "${body}")
string(REGEX REPLACE "<a href=\"([^\":.#]|\\.\\.)[^\":]*\"[^>]*>(([^<]|<[^/]|</[^a])*)</a>" "\\2" body "${body}")

string(REGEX MATCH "<h1>([^<]*)</h1>" heading "${body}")
set(title "${CMAKE_MATCH_1}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/manual-page.html.in" "${page}" @ONLY)
