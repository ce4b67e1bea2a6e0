#pragma once

#include "base/common/Result.h"
#include "media/MovieWriter.h"

#include <QString>

#include <memory>

namespace kestrum {

enum class MovieFileType { quickTimeMovie };

// Makes writers; the capture pipeline holds one so that its tests can inject a fake writer.
class MovieWriterFactory {
  public:
    virtual ~MovieWriterFactory() = default;

    // A writer for a new file at `path`, or the Error that prevents it (for example a folder that does
    // not exist). Called on the main thread.
    virtual Result<std::unique_ptr<MovieWriter>> createWriter(const QString& path,
                                                              MovieFileType fileType) const = 0;
};

}  // namespace kestrum
