#pragma once
// Controls without a graphics interface: they are laid out and measured like any, and nothing is drawn.

namespace companion {

/// Puts the makers of such controls into the creation table for its life.
class PlainFlavour {
  public:
    PlainFlavour();
    ~PlainFlavour();
    PlainFlavour(const PlainFlavour&) = delete;
    PlainFlavour& operator=(const PlainFlavour&) = delete;
};

} // namespace companion
