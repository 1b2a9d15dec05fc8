/// What a call of `PluginMain` brings: the host's basic interface and the message records.
#pragma once

#include "suites/host_types.h"

extern "C" {

/* The host's core operations, there from the first call on. */
typedef struct HostBasic {
    /* Hands out the table of a suite; each successful call is one use that has to be given back.
       On failure *suite is left alone: kHostSuiteNotFound for an unknown name or version. */
    HostError (*AcquireSuite)(const char* name, uint32_t version, const void** suite);

    /* Gives one use back.  kHostBadParameter if there is none. */
    HostError (*ReleaseSuite)(const char* name, uint32_t version);

    /* 1 if the two texts are equal, else 0. */
    int32_t (*TextsEqual)(const char* a, const char* b);

    /* A zeroed block, the caller's until FreeBlock; it outlives an unload of the plug-in. */
    HostError (*AllocateBlock)(uint64_t bytes, void** block);
    HostError (*FreeBlock)(void* block);
} HostBasic;

/* The head of every message. */
typedef struct HostMessage {
    uint32_t check;         /* the host's own */
    PluginHandle self;      /* this plug-in */
    void* globals;          /* the plug-in's slot: the host hands its value back at every call */
    const HostBasic* basic; /* the same one for as long as the host runs */
} HostMessage;

typedef struct HostMenuMessage {
    HostMessage head;
    MenuItemHandle item;
} HostMenuMessage;

typedef struct HostTimerMessage {
    HostMessage head;
    TimerHandle timer;
} HostTimerMessage;

typedef struct HostNotifierMessage {
    HostMessage head;
    const char* type;
} HostNotifierMessage;

typedef struct HostActionMessage {
    HostMessage head;
    int32_t typeWord; /* as the action was registered with */
    ParametersHandle parameters;
} HostActionMessage;

/* Callers and selectors of PluginMain. */
#define HOST_CALLER_INTERFACE "SP Interface"
#define HOST_CALLER_ACCESS "SP Access"
#define HOST_CALLER_MENU "AI Menu"
#define HOST_CALLER_TIMER "AI Timer"
#define HOST_CALLER_NOTIFIER "AI Notifier"
#define HOST_CALLER_ACTION "Action Manager"
#define HOST_SELECTOR_STARTUP "Startup"
#define HOST_SELECTOR_ABOUT "About"
#define HOST_SELECTOR_SHUTDOWN "Shutdown"
/* "Unload" and "Reload" come only while no code of the plug-in is on the stack: no message, no handler, no
   window or dialog procedure.  Behind "Unload" the host calls no address of the plug-in, and no window may
   have one for its procedure. */
#define HOST_SELECTOR_UNLOAD "Unload"
#define HOST_SELECTOR_RELOAD "Reload"
#define HOST_SELECTOR_GO "AI Go"
#define HOST_SELECTOR_UPDATE "AI Update"
#define HOST_SELECTOR_NOTIFY "AI Notify"
#define HOST_SELECTOR_DO_ACTION "Do Action"

/* The plug-in's one entry. */
typedef HostError (*HostPluginMain)(const char* caller, const char* selector, HostMessage* message);

} /* extern "C" */
