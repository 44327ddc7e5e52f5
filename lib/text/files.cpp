#include "text/files.h"

#include "text/run_end.h"

namespace brelan {

void Files::require_ordinary(const NamedFile& file) const {
    switch (kind_of(file.path)) {
        case FileKind::directory:
            fail(file.name + ": expected a file, found a directory");
        case FileKind::none:
            fail(file.name + ": expected a file, but there is none of this name");
        case FileKind::other:
            fail(file.name + ": expected an ordinary file");
        case FileKind::ordinary:
            break;
    }
}

}  // namespace brelan
