#include "modules/module_check.h"
namespace zf90 { void check_module_entries() {} }
