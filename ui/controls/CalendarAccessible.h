// What assistive technologies learn about the calendar.
#pragma once

/// Makes the day grid known to assistive technologies as a group with the name it is given;
/// without it it would be a plain area. Further calls do nothing.
void installCalendarAccessible();
