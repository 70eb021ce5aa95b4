#pragma once
// All kinds of objects that the manager owns beside panels: fonts, text and number boxes, graphs and charts,
// and roots of the others. A root says only what ownership needs: that it is a control and how it is deleted.
// A kind's full class takes the place of its root here.
#include "controls/control.h"
#include "controls/line_graph.h"
#include "controls/num_box.h"
#include "controls/pie_chart.h"
#include "controls/text_box.h"
#include "font/font_unicode.h"

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
