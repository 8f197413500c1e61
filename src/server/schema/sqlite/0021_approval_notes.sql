-- 0021_approval_notes.sql
-- Why: whoever decides a level may say why; the requester reads it beside the decision.

alter table PurchaseOrderAdm add column ApprovalNote text;
alter table SuppManOrderAdmin add column ApprovalNote text;
