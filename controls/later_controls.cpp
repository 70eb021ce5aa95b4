#include "controls/later_controls.h"

CFlipBox_Base::~CFlipBox_Base() = default;
CImgBox_Base::~CImgBox_Base() = default;
CVideoBox_Base::~CVideoBox_Base() = default;
CLineGraph_Base::~CLineGraph_Base() = default;
CPieChart_Base::~CPieChart_Base() = default;
