#pragma once
// syxtool highlight FILE [TEXTFILE] [--format html|ansi]: colours the
// definition's own sample, or a text file, by the definition, as a small
// HTML page or with terminal colours.

// Arguments as main() has them, the command name at argv[1]. Returns the
// exit status: 0, 1 when a file cannot be read or the output written, 2 on
// bad arguments.
int RunHighlight(int argc, char** argv);
