#pragma once

/// What `applicationIsActive` answers in these tests.
void setProgramActive(bool active);
