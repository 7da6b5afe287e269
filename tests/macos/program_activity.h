#pragma once

/// What `applicationIsActive` answers in these tests.
void setProgramActive(bool active);

/// What `sessionIsActive` answers in these tests.
void setSessionActive(bool active);
