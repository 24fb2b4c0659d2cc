#pragma once
// Help: the compiled help file beside the executable, opened at the
// program's topic by the desktop's handler. Without the file nothing
// happens and nothing is said.

#include <QString>

#include <functional>

inline constexpr const char* HelpFileName = "help/Scribex.chm";
inline constexpr const char* HelpTopic = "::/TheLexsmith.htm";

// Opens a help file at a topic; set by LoadHtmlHelp, replaceable (tests
// record the calls instead of starting a viewer).
extern std::function<void(const QString& HelpFile, const QString& Topic)> HtmlHelp;

void LoadHtmlHelp();
void UnloadHtmlHelp();

// The help file's path below the folder of the executable.
QString HelpFilePath(const QString& ExeDir);
// Shows the program's topic when the help file exists; false when it does not.
bool ShowHelpContents(const QString& ExeDir);
