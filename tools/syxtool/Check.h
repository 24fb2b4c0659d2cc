#pragma once
// syxtool check and syxtool diff. Each takes the arguments after its
// command name and returns the exit status.

int RunCheck(int Argc, char** Argv);
int RunDiff(int Argc, char** Argv);
