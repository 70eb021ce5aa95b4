#pragma once
// Roots of the kinds of objects that the manager owns beside panels. Each says only what ownership needs:
// that it is a control (but for fonts) and how it is deleted. A kind's full class takes the place of its root
// here.
#include "controls/control.h"

class CFontUniCode {
  public:
    virtual ~CFontUniCode() = 0;
};

class CTextBox_Base : public virtual CControl {
  public:
    virtual ~CTextBox_Base() = 0;
};

class CNumBox_Base : public virtual CControl {
  public:
    virtual ~CNumBox_Base() = 0;
};

class CFlipBox_Base : public virtual CControl {
  public:
    virtual ~CFlipBox_Base() = 0;
};

class CImgBox_Base : public virtual CControl {
  public:
    virtual ~CImgBox_Base() = 0;
};

class CVideoBox_Base : public virtual CControl {
  public:
    virtual ~CVideoBox_Base() = 0;
};

class CLineGraph_Base : public virtual CControl {
  public:
    virtual ~CLineGraph_Base() = 0;
};

class CPieChart_Base : public virtual CControl {
  public:
    virtual ~CPieChart_Base() = 0;
};
