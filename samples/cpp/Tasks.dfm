object TaskData: TTaskData
  OldCreateOrder = False
  OnCreate = TaskDataCreate
  OnDestroy = TaskDataDestroy
  Left = 285
  Top = 161
  Height = 150
  Width = 215
end
