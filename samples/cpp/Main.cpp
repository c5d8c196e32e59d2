//---------------------------------------------------------------------------
#include <Forms.hpp>
#pragma hdrstop

#include "Main.h"
#include "Tasks.h"
//---------------------------------------------------------------------------
#pragma package(smart_init)
#pragma resource "*.dfm"
TTimeForm *TimeForm;
//---------------------------------------------------------------------------
__fastcall TTimeForm::TTimeForm(TComponent *Owner) : TForm(Owner)
{
}
//---------------------------------------------------------------------------
void __fastcall TTimeForm::FormCreate(TObject *)
{
        TaskCombo->Items = TaskData->Tasks();
        TaskCombo->ItemIndex = 0;
}
//---------------------------------------------------------------------------
void __fastcall TTimeForm::StartButtonClick(TObject *)
{
        if (FClock.Running())
        {
                FClock.Stop();
                TaskData->Book(TaskCombo->Text, FClock.Seconds());
                FClock = Clock();
        }
        else
                FClock.Start();
        Timer->Enabled = FClock.Running();
        TaskCombo->Enabled = !FClock.Running();
        StartButton->Caption = FClock.Running() ? "&Stop" : "&Start";
}
//---------------------------------------------------------------------------
void __fastcall TTimeForm::TimerTimer(TObject *)
{
        const long seconds = FClock.Seconds();
        TimeLabel->Caption = Format("%.2d:%.2d:%.2d",
                ARRAYOFCONST((int(seconds / 3600), int(seconds / 60 % 60), int(seconds % 60))));
}
//---------------------------------------------------------------------------
