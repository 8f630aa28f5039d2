// What a plug-in can do wrong with what the host lends it: suites, strings, blocks, art, references.
#pragma once

void LeakSuite();
void ReleaseForeignSuite();
void UseSuiteAfterRelease();
void LeakString();
void LeakPath();
void LeakBlock();
void OverrunBlock();
void LeakHandle();
void DisposeTwice();
void LeakReference();
void UseReferenceAfterRelease();
void UseArtAfterDispose();
void MakeUpHandle();
void PassNull();
void CallUnofferedSlot();
void CallUnofferedBasicSlot();
void CallOnOtherThread();
