/* What the program of main_job.c gets from its host: the platform, here the fake one. */
#ifndef TESTS_ABI_HOST_H
#define TESTS_ABI_HOST_H

#include <aaadom/aaadom.h>

/** A request as a front end sends it: the message, which is consumed, behind an operation head. */
TLV_MSG* host_request(uint32_t operation, TLV_MSG* message);
/** The same request as one role sends it to the other. */
TLV_MSG* host_forward(TLV_MSG* request);
/** Array elements written to the database so far, removals included. */
uint32_t host_saved_elements(void);
/** Makes the next database call fail. */
void host_break_next_database_call(void);
/** Messages, hash tables and sockets that nobody destroyed, and calls that nobody may make. */
int64_t host_leftovers(void);

#endif
