#pragma once

#include "base/common/Result.h"
#include "core/settings/UserDefaultsValue.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace kestrum {

// The file form of the user defaults: one JSON object mapping each key to a typed value, an object with
// exactly one member whose name is the type, so that the type survives the round trip:
//
//     {
//         "favoriteRecordingPaths": {"stringList": ["/home/me/Videos/Kestrum/a.mov"]},
//         "kestrumAppearance": {"string": "dark"},
//         "playbackMuted": {"bool": false},
//         "recordingVideoFrameRate": {"integer": 60},
//         "recordingsFolderBookmark": {"data": "L2hvbWUvbWUvVmlkZW9z"},
//         "systemAudioVolume": {"double": 1}
//     }
//
// "bool" holds true or false; "integer" a JSON integer within 64 bits; "double" a JSON number in its
// shortest round-trip form, or one of the strings "nan", "inf", "-inf" that JSON cannot hold as numbers;
// "string" a string; "stringList" an array of strings; "data" standard base64 with padding. Keys are
// written in ascending order, indented for a human reader. UTF-8 without byte-order mark.
using UserDefaultsMap = QMap<QString, UserDefaultsValue>;

QByteArray encodeUserDefaults(const UserDefaultsMap& values);

// Strict: anything that is not this form (not JSON, a top level that is no object, a value that is no
// one-member object, an unknown type name, a payload of the wrong JSON type, a fractional or too large
// "integer", bad base64) fails the whole file, with a reason for the log.
Result<UserDefaultsMap> decodeUserDefaults(const QByteArray& bytes);

}  // namespace kestrum
