#include "SourceLiterals.h"

#include <QDirIterator>
#include <QFile>

namespace kestrum::test {

namespace {

template <class Visit>
void eachSourceLine(const QStringList& folders, Visit visit) {
    const QString root = QStringLiteral(KESTRUM_SOURCE_DIR);
    for (const QString& folder : folders) {
        QDirIterator files(root + QLatin1Char('/') + folder,
                           {QStringLiteral("*.h"), QStringLiteral("*.cpp"), QStringLiteral("*.qml")},
                           QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) continue;
            const QString relative = path.mid(root.size() + 1);
            int number = 0;
            while (!file.atEnd()) {
                const QString line = QString::fromUtf8(file.readLine());
                ++number;
                const QString trimmed = line.trimmed();
                if (trimmed.startsWith(QLatin1String("//")) || trimmed.startsWith(QLatin1Char('*'))) continue;
                visit(line, relative + QLatin1Char(':') + QString::number(number));
            }
        }
    }
}

}  // namespace

std::vector<SourceLiteral> sourceLiterals(const QStringList& folders) {
    static const QRegularExpression literal(QStringLiteral("\"((?:[^\"\\\\]|\\\\.)*)\""));
    std::vector<SourceLiteral> found;
    eachSourceLine(folders, [&](const QString& line, const QString& place) {
        for (const QRegularExpressionMatch& match : literal.globalMatch(line)) {
            found.push_back({match.captured(1), place, line});
        }
    });
    return found;
}

std::vector<SourceLiteral> qmlPropertyLiterals(const QStringList& folders, const QString& property) {
    const QRegularExpression assignment(QStringLiteral("\\b") + QRegularExpression::escape(property) +
                                        QStringLiteral("\\s*:\\s*\"([^\"]*)\""));
    std::vector<SourceLiteral> found;
    eachSourceLine(folders, [&](const QString& line, const QString& place) {
        for (const QRegularExpressionMatch& match : assignment.globalMatch(line)) {
            found.push_back({match.captured(1), place, line});
        }
    });
    return found;
}

QMap<QString, QString> namesInSources(const std::function<bool(const SourceLiteral&)>& isName,
                                      const QString& property) {
    const QStringList folders{QStringLiteral("src"), QStringLiteral("tools")};
    QMap<QString, QString> names;
    for (const SourceLiteral& literal : sourceLiterals(folders)) {
        if (isName(literal) && !names.contains(literal.text)) names.insert(literal.text, literal.place);
    }
    for (const SourceLiteral& literal : qmlPropertyLiterals(folders, property)) {
        if (!names.contains(literal.text)) names.insert(literal.text, literal.place);
    }
    return names;
}

}  // namespace kestrum::test
