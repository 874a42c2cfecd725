/* A server over libtirpc. */
#pragma once

/* Listens on 127.0.0.1, at the port that is stored. Result: the listener; negative when that failed. */
int listenForCalls(unsigned short* port);

/* Answers the requests that it expects, and those only: others get "garbage arguments". Ends with its process, and with
   that one's parent. */
void serveCalls(int listener);
