#include "controls/control_kinds.h"

CVideoBox_Base::~CVideoBox_Base() = default;
