#pragma once
#include "editor/rkSpcEditor.h"
namespace wrenfold {
using TSpcEditorPro = TSpcEditor;
}
