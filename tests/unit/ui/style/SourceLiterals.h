#pragma once

#include <QMap>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kestrum::test {

// A text literal written in the sources, with where it stands.
struct SourceLiteral {
    QString text;
    QString place;  // "<path relative to the repository>:<line>"
    QString line;   // the whole line, for context rules
};

// Every double-quoted literal in the C++ and QML sources under the repository's `folders` (comment lines
// skipped), in file order.
std::vector<SourceLiteral> sourceLiterals(const QStringList& folders);

// The literals assigned to a QML property of that name ("symbolName: \"star\"").
std::vector<SourceLiteral> qmlPropertyLiterals(const QStringList& folders, const QString& property);

// The names the code under src/ and tools/ uses for one kind of thing: every literal that `isName`
// accepts, plus every literal assigned to the QML property `property`, each with the first place it
// stands.
QMap<QString, QString> namesInSources(const std::function<bool(const SourceLiteral&)>& isName,
                                      const QString& property);

}  // namespace kestrum::test
