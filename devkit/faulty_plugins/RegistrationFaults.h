// What a plug-in can do wrong with timers, menu items and file formats.
#pragma once

void LeaveTimer();
void LeaveTimers();
void RegisterAsAnother();
void AddDisabledItem();
void LeakItemText();
void AddFileFormat();
// Gives back the path that the host has in its message.
void TakeMessagePath();
