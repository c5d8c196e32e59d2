//---------------------------------------------------------------------------
#include <Forms.hpp>
#pragma hdrstop

#include <fstream.h>
#include "Tasks.h"
//---------------------------------------------------------------------------
#pragma package(smart_init)
#pragma resource "*.dfm"
TTaskData *TaskData;

static const char *DefaultTasks[] = { "Letters", "Meetings", "Repairs" };
//---------------------------------------------------------------------------
__fastcall TTaskData::TTaskData(TComponent *Owner) : TDataModule(Owner)
{
}
//---------------------------------------------------------------------------
void __fastcall TTaskData::TaskDataCreate(TObject *)
{
        FTasks = new TStringList;
        for (int i = 0; i < 3; ++i)
                FTasks->Add(DefaultTasks[i]);
}
//---------------------------------------------------------------------------
void __fastcall TTaskData::TaskDataDestroy(TObject *)
{
        delete FTasks;
}
//---------------------------------------------------------------------------
void TTaskData::Book(const AnsiString &task, long seconds)
{
        ofstream bookings(ChangeFileExt(Application->ExeName, ".log").c_str(), ios::app);
        bookings << DateTimeToStr(Now()).c_str() << '\t' << task.c_str() << '\t'
                 << seconds << '\n';
}
//---------------------------------------------------------------------------
