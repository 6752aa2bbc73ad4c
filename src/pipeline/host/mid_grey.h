// Where the tone curves' knee rests: halfway between an encoding's 18 % grey and the middle of the code range.
#pragma once

namespace morvellan
{

// Code value of 18 % grey in an input's encoding, pulled halfway to 0.5. An index outside the list counts as 0.
float midGreyCentre(int inputGamut);

}  // namespace morvellan
