#include "app/hh.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

std::function<void(const QString& HelpFile, const QString& Topic)> HtmlHelp;

namespace {

void OpenWithDesktop(const QString& HelpFile, const QString& Topic) {
#ifdef Q_OS_WIN
    // The help viewer takes "file::/topic" in one argument.
    QProcess::startDetached(QStringLiteral("hh.exe"), {HelpFile + Topic});
#else
    // Desktop viewers of compiled help take the file only; the topic is its
    // start page anyway.
    (void)Topic;
    QDesktopServices::openUrl(QUrl::fromLocalFile(HelpFile));
#endif
}

} // namespace

void LoadHtmlHelp() {
    if (HtmlHelp) return;
    HtmlHelp = OpenWithDesktop;
}

void UnloadHtmlHelp() {
    HtmlHelp = nullptr;
}

QString HelpFilePath(const QString& ExeDir) {
    return QDir(ExeDir).filePath(QString::fromLatin1(HelpFileName));
}

bool ShowHelpContents(const QString& ExeDir) {
    const QString path = HelpFilePath(ExeDir);
    if (!QFileInfo(path).isFile()) return false;
    if (!HtmlHelp) LoadHtmlHelp();
    HtmlHelp(path, QString::fromLatin1(HelpTopic));
    return true;
}
