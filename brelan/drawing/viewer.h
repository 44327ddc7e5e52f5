// The page that shows a mesh in a browser, as it stands in drawing/viewer/.
#pragma once

namespace brelan::tool {

extern const char* const VIEWER_PAGE;  // with %TITLE%, %STYLE%, %DATA% and %SCRIPT% to be put in
extern const char* const VIEWER_STYLE;
extern const char* const VIEWER_SCRIPT;

}  // namespace brelan::tool
