//---------------------------------------------------------------------------
#ifndef TasksH
#define TasksH
//---------------------------------------------------------------------------
#include <Classes.hpp>
#include <Controls.hpp>
#include <Forms.hpp>
//---------------------------------------------------------------------------
// The tasks that time is booked on, and the file of the bookings.
class TTaskData : public TDataModule
{
__published:    // Components of the data module
        void __fastcall TaskDataCreate(TObject *Sender);
        void __fastcall TaskDataDestroy(TObject *Sender);
private:
        TStringList *FTasks;
public:
        __fastcall TTaskData(TComponent *Owner);
        TStrings *Tasks() { return FTasks; }
        void Book(const AnsiString &task, long seconds);
};
//---------------------------------------------------------------------------
extern PACKAGE TTaskData *TaskData;
//---------------------------------------------------------------------------
#endif
