// Where the bars of the omission page stand: plain lengths, all in the unit of the frame they are asked for
// (twips on the page), from its upper left corner.
#pragma once

#include "analysis/omission.hpp"

namespace lotmere {

struct Box {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;
};

// The place of one number's group in a frame of that width and height. `number` from 1 to the count of the
// colour.
[[nodiscard]] Box placeGroup(BallColour balls, int number, double frame_width, double frame_height);

// Inside a group. A gap that isn't known has a bar without height.
struct OmissionBars {
  Box largest;
  Box average;  // in front of the largest
  Box running;
  double caption_top = 0;
  double base_line = 0;        // the top of the line that the bars stand on
  double ball_centre = 0;      // of the ball's picture, from the left
  double ball_foot = 0;        // of the ball's picture, from the top
  bool above_average = false;  // the running gap is longer than the average: its bar is red, else light blue
};

// The bars of one number in a group of that width and height. The scale leaves room above the longest closed
// gap of all numbers; a running gap longer than that may rise over the top.
[[nodiscard]] OmissionBars drawOmissionBars(const Omission& omission, int number, double width,
                                            double height);

}  // namespace lotmere
