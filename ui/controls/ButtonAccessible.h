// What assistive technologies learn about the self-painted buttons.
#pragma once

/// Makes the self-painted buttons known to assistive technologies as buttons and check boxes;
/// without it they would be plain areas. Further calls do nothing.
void installButtonAccessible();
