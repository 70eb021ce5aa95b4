#include "controls/control_kinds.h"

CFlipBox_Base::~CFlipBox_Base() = default;
CVideoBox_Base::~CVideoBox_Base() = default;
